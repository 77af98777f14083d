#include "app/entorno.h"

#include <QUuid>

ImpresoraTickets ImpresoraTickets::desdeIni(const IniFile& f) {
    const QString& s = ini::IMPRESORA_TICKETS;
    ImpresoraTickets t;
    t.TIPO = f.valor(s, QStringLiteral("TIPO"));
    t.IMPRESORA = f.valor(s, QStringLiteral("IMPRESORA"));
    t.PUERTO = f.valor(s, QStringLiteral("PUERTO"));
    t.BITSDATOS = f.valor(s, QStringLiteral("BITSDATOS"));
    t.BITSPARADA = f.valor(s, QStringLiteral("BITSPARADA"));
    t.PARIDAD = f.valor(s, QStringLiteral("PARIDAD"));
    t.VELOCIDAD = f.valor(s, QStringLiteral("VELOCIDAD"));
    t.NUMPASADAS = f.valor(s, QStringLiteral("NUMPASADAS"));
    t.CORTEPAPEL = f.valor(s, QStringLiteral("CORTEPAPEL"));
    return t;
}

ModemGsm ModemGsm::desdeIni(const IniFile& f) {
    const QString& s = ini::MODEM_GSM;
    ModemGsm m;
    m.PUERTO = f.valor(s, QStringLiteral("PUERTO"));
    m.BITSDATOS = f.valor(s, QStringLiteral("BITSDATOS"));
    m.BITSPARADA = f.valor(s, QStringLiteral("BITSPARADA"));
    m.PARIDAD = f.valor(s, QStringLiteral("PARIDAD"));
    m.VELOCIDAD = f.valor(s, QStringLiteral("VELOCIDAD"));
    return m;
}

Entorno::Entorno(std::unique_ptr<Database> db, Dialogs& dialogs, const Clock& reloj)
    : sesion(QUuid::createUuid().toString(QUuid::WithoutBraces)), propia_(std::move(db)), db_(propia_.get()),
      dialogs_(dialogs), reloj_(reloj) {}

Entorno::Entorno(Database& db, Dialogs& dialogs, const Clock& reloj)
    : sesion(QUuid::createUuid().toString(QUuid::WithoutBraces)), db_(&db), dialogs_(dialogs), reloj_(reloj) {
}

void Entorno::cerrarBaseDatos() {
    if (propia_) propia_->cerrar();
    propia_.reset();
    db_ = nullptr;
}

void Entorno::ponerBaseDatos(std::unique_ptr<Database> db) {
    propia_ = std::move(db);
    db_ = propia_.get();
}

void Entorno::desidentificar() {
    usuario.clear();
    nombreUsuario.clear();
    tipoUsuario.clear();
}
