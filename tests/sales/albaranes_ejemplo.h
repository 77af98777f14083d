#pragma once
// Eight delivery notes of three clients in the sale series A and B and the credit series R,
// shared by the note search and its window. Newest first: R1 (02/03) A4 (01/03) B3 (15/02 19:00)
// B2 (15/02 18:00) B1 (15/02, no time) A3 (01/02) A2 (10/01 11:30) A1 (10/01 09:00).
#include "sesion.h"

struct AlbaranesEjemplo : Sesion {
    qint64 jose, ana, luis, a3, r1;

    AlbaranesEjemplo() : Sesion(QDateTime(QDate(2026, 3, 10), QTime(10, 0))) {
        for (const QStringList& serie : {QStringList{u"B"_s, u"Clínica"_s, u"V"_s},
                                         {u"A"_s, u"Ventas"_s, u"V"_s},
                                         {u"R"_s, u"Abonos"_s, u"A"_s}})
            s.fila(u"Series"_s,
                   {{u"Serie"_s, serie[0]}, {u"Descripcion"_s, serie[1]}, {u"Tipo"_s, serie[2]}});
        jose = s.cliente(u"Núñez Pérez, José"_s);
        ana = s.cliente(u"Pérez Núñez, Ana"_s);
        luis = s.cliente(u"García Gil, Luis"_s);
        const qint64 perro = s.especie(u"Perro"_s);
        const qint64 tobias = s.mascota(u"Tobías"_s, jose, perro), misi = s.mascota(u"Misi"_s, jose, perro),
                     kira = s.mascota(u"Kira"_s, ana, perro);
        // Pending invoicing and collection.
        nota(u"A"_s, 1, QDate(2026, 1, 10), QTime(9, 0), jose, tobias, 36.30, 36.30);
        // Collected, not invoiced.
        nota(u"A"_s, 2, QDate(2026, 1, 10), QTime(11, 30), ana, kira, 12.10, 0, {{u"Cobrado"_s, true}});
        // Invoiced and collected.
        a3 = nota(u"A"_s, 3, QDate(2026, 2, 1), QTime(10, 0), jose, misi, 50.00, 0,
                  {{u"NumFactura"_s, 7}, {u"SerieFactura"_s, u"A"_s}, {u"Cobrado"_s, true}});
        // Invoiced on an invoice without series, partly collected, no time.
        nota(u"B"_s, 1, QDate(2026, 2, 15), QTime(), luis, {}, 1234.50, 1000.00, {{u"NumFactura"_s, 12}});
        // A zero note: neither collected nor pending collection.
        nota(u"B"_s, 2, QDate(2026, 2, 15), QTime(18, 0), ana, {}, 0, 0, {{u"Cobrado"_s, false}});
        // Nothing pending of a non-zero total, not marked: collected.
        nota(u"A"_s, 4, QDate(2026, 3, 1), QTime(8, 0), jose, tobias, 8.25, 0);
        // A zero note marked as collected: collected, though nothing was ever to be collected.
        nota(u"B"_s, 3, QDate(2026, 2, 15), QTime(19, 0), luis, {}, 0, 0, {{u"Cobrado"_s, true}});
        // A credit note: negative total, nothing pending.
        r1 = nota(u"R"_s, 1, QDate(2026, 3, 2), QTime(12, 0), ana, {}, -12.10, 0);
    }

    qint64 nota(const QString& serie, int numero, const QDate& fecha, const QTime& hora, qint64 cliente,
                const QVariant& mascota, double total, double pendiente, const QVariantMap& mas = {}) {
        return s.fila(u"Albaranes"_s, Semilla::con({{u"Serie"_s, serie},
                                                    {u"NumAlbaran"_s, numero},
                                                    {u"Fecha"_s, fecha},
                                                    {u"Hora"_s, hora.isValid() ? QVariant(hora) : QVariant()},
                                                    {u"IdCliente"_s, cliente},
                                                    {u"IdMascota"_s, mascota},
                                                    {u"Total"_s, total},
                                                    {u"Pendiente"_s, pendiente}},
                                                   mas));
    }
};
