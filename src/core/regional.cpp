#include "core/regional.h"

RegionalSettings RegionalSettings::requeridos() {
    RegionalSettings r;
    r.formatoFechaCorta = QStringLiteral("dd/MM/yyyy");
    r.separadorFecha = QStringLiteral("/");
    r.formatoHora = QStringLiteral("H:mm:ss");
    r.separadorHora = QStringLiteral(":");
    r.separadorDecimal = QStringLiteral(",");
    r.separadorMiles = QStringLiteral(".");
    r.separadorDecimalMoneda = QStringLiteral(",");
    r.separadorMilesMoneda = QStringLiteral(".");
    return r;
}

RegionalSettings RegionalSettings::delSistema() {
    return requeridos();
}

std::optional<QString> comprobarConfiguracionRegional(const RegionalSettings& encontrada) {
    const RegionalSettings requerida = RegionalSettings::requeridos();
    struct Comprobacion {
        QString RegionalSettings::*campo;
        const char16_t* frase; // the blanks at the end are part of the text
    };
    static constexpr Comprobacion comprobaciones[] = {
        {&RegionalSettings::formatoFechaCorta, u"como formato de fecha corta el valor  "},
        {&RegionalSettings::separadorFecha, u"como separador en el formato de fecha el valor  "},
        {&RegionalSettings::formatoHora, u"como formato de hora el valor  "},
        {&RegionalSettings::separadorHora, u"como separador en el formato de hora el valor  "},
        {&RegionalSettings::separadorDecimal, u"como separador decimal numérico el valor "},
        {&RegionalSettings::separadorMiles, u"como separador numérico de miles el valor "},
        {&RegionalSettings::separadorDecimalMoneda, u"como separador decimal de moneda el valor "},
        {&RegionalSettings::separadorMilesMoneda, u"como separador de miles para la moneda el valor "},
    };
    for (const Comprobacion& c : comprobaciones) {
        const QString& hallado = encontrada.*(c.campo);
        const QString& necesario = requerida.*(c.campo);
        if (hallado == necesario) continue;
        return QStringLiteral("La Configuración Regional de su ordenador indica que tiene configurado ") +
               QString::fromUtf16(c.frase) + u'\'' + hallado + u'\'' + u'\n' +
               QStringLiteral("Para un correcto funcionamiento de Pramelvix, debe cambiarlo a '") +
               necesario + u'\'' + u'\n' +
               QStringLiteral("Acceda a la sección de configuración de Windows y realice esa modificación "
                              "para poder iniciar Pramelvix.");
    }
    return std::nullopt;
}
