#include "app/claves.h"

#include "core/errores.h"

#include <sodium.h>

namespace {
void iniciarSodium() {
    static const bool listo = sodium_init() >= 0;
    if (!listo) throw ErrorPrograma(QStringLiteral("No se ha podido iniciar la librería de cifrado."));
}
} // namespace

QString nuevaSal() {
    iniciarSodium();
    static const char alfabeto[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    QString sal;
    for (int i = 0; i < kLongitudSal; ++i)
        sal.append(QLatin1Char(alfabeto[randombytes_uniform(sizeof(alfabeto) - 1)]));
    return sal;
}

QString hashClave(const QString& sal, const QString& clave) {
    iniciarSodium();
    const QByteArray texto = (sal + clave).toUtf8();
    char hash[crypto_pwhash_STRBYTES];
    if (crypto_pwhash_str_alg(hash, texto.constData(), static_cast<unsigned long long>(texto.size()),
                              crypto_pwhash_OPSLIMIT_INTERACTIVE, crypto_pwhash_MEMLIMIT_INTERACTIVE,
                              crypto_pwhash_ALG_ARGON2ID13) != 0)
        throw ErrorPrograma(QStringLiteral("No hay memoria suficiente para cifrar la clave."));
    return QString::fromLatin1(hash);
}

bool claveCorrecta(const QString& hash, const QString& sal, const QString& clave) {
    iniciarSodium();
    if (hash.isEmpty()) return false;
    const QByteArray h = hash.toLatin1();
    const QByteArray texto = (sal + clave).toUtf8();
    return crypto_pwhash_str_verify(h.constData(), texto.constData(),
                                    static_cast<unsigned long long>(texto.size())) == 0;
}
