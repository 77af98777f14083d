#include "data/ajustes.h"

const QList<AjusteConocido>& ajustesConocidos() {
    using namespace claves;
    static const QList<AjusteConocido> lista = {
        {MULTIPUESTO, QStringLiteral("SI"),
         QStringLiteral("Varios puestos a la vez con bloqueo de registros")},
        {VERSION_REQUISITO, QString(), QStringLiteral("Versión que debe ejecutar cada puesto")},
        {VERSION_INFORMADA, QString(), QStringLiteral("Versión informada por el último puesto que arrancó")},
        {PUESTO_SERVIDOR, QString(),
         QStringLiteral("Puesto servidor (único que entra en modo 'Monopuesto')")},
        {TIPOINSTALACION, QStringLiteral("CLINICA"), QStringLiteral("Tipo de instalación")},
        {DIAS_COMPACTACION, QStringLiteral("0"),
         QStringLiteral("Compactación automática cada N días (0: no)")},
        {FECHA_COMPACTACION, QString(), QStringLiteral("Fecha de la última compactación")},
        {CONTAB_SOLO_ADMINISTRADORES, QStringLiteral("N"),
         QStringLiteral("Contabilidad sólo para administradores")},
        {ULT_BORRADO_CONTAB, QString(), QStringLiteral("Último borrado de la contabilidad exportada")},
        {CIERRES_DE_CAJA, QString(), QStringLiteral("Configuración de los cierres de caja")},
        {PUERTO_UDP_CHAT, QStringLiteral("5150"), QStringLiteral("Puerto UDP de 'Conversar entre usuarios'")},
        {ESPERA_ENTRE_SMS, QStringLiteral("5"), QStringLiteral("Pausa en segundos entre dos SMS por módem")},
        {EMAIL_TIPO_CONF, QStringLiteral("NINGUNA"), QStringLiteral("Forma de envío del correo electrónico")},
        {JAULAS, QString(), QStringLiteral("Configuración de las jaulas de hospitalización")},
        {IDX_PLT, QStringLiteral("0"), QStringLiteral("Índice de las plantillas de documentos")},
        {NIF_PRESENT, QString(), QStringLiteral("NIF del presentador de remesas")},
        {NOM_PRESENT, QString(), QStringLiteral("Nombre del presentador de remesas")},
        {SUF_PRESENT, QString(), QStringLiteral("Sufijo del presentador de remesas")},
        {ENT_PRESENT, QString(), QStringLiteral("Entidad del presentador de remesas")},
        {OFI_PRESENT, QString(), QStringLiteral("Oficina del presentador de remesas")},
        {NIF_ORDENANTE, QString(), QStringLiteral("NIF del ordenante de remesas")},
        {NOM_ORDENANTE, QString(), QStringLiteral("Nombre del ordenante de remesas")},
        {SUF_ORDENANTE, QString(), QStringLiteral("Sufijo del ordenante de remesas")},
        {CCC_ORDENANTE, QString(), QStringLiteral("Cuenta del ordenante de remesas")},
        {BIC_ORDENANTE, QString(), QStringLiteral("BIC del ordenante de remesas")},
        {NOMBRE_CLINICA, QString(), QStringLiteral("Nombre de la clínica en los documentos")},
        {NIF_CLINICA, QString(), QStringLiteral("N.I.F. de la clínica")},
        {DIRECCION_CLINICA, QString(), QStringLiteral("Dirección de la clínica")},
        {POBLACION_CLINICA, QString(), QStringLiteral("Código postal y población de la clínica")},
        {TELEFONO_CLINICA, QString(), QStringLiteral("Teléfono de la clínica")},
        {EMAIL_CLINICA, QString(), QStringLiteral("E-Mail de la clínica")},
    };
    return lista;
}

QString ajustePorDefecto(const QString& clave) {
    for (const auto& a : ajustesConocidos())
        if (a.clave == clave) return a.porDefecto;
    return {};
}

QString Ajustes::leer(const QString& clave) {
    const QVariant v = db_.valor(QStringLiteral("SELECT Valor FROM Parametros WHERE Clave = ?"), {clave});
    return v.isNull() ? QString() : v.toString();
}

QString Ajustes::leerConDefecto(const QString& clave) {
    const QString v = leer(clave);
    return v.isEmpty() ? ajustePorDefecto(clave) : v;
}

bool Ajustes::existe(const QString& clave) {
    return db_.valor(QStringLiteral("SELECT COUNT(*) FROM Parametros WHERE Clave = ?"), {clave}).toInt() > 0;
}

void Ajustes::escribir(const QString& clave, const QString& valor) {
    db_.ejecutar(QStringLiteral("INSERT INTO Parametros (Clave, Valor) VALUES (?, ?) "
                                "ON CONFLICT (Clave) DO UPDATE SET Valor = excluded.Valor"),
                 {clave, valor});
}

void Ajustes::borrar(const QString& clave) {
    db_.ejecutar(QStringLiteral("DELETE FROM Parametros WHERE Clave = ?"), {clave});
}

void Ajustes::completarPorDefecto() {
    Transaction tx = db_.transaccion();
    for (const auto& a : ajustesConocidos())
        db_.ejecutar(
            QStringLiteral(
                "INSERT INTO Parametros (Clave, Valor) VALUES (?, ?) ON CONFLICT (Clave) DO NOTHING"),
            {a.clave, a.porDefecto});
    tx.commit();
}
