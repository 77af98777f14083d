// Fixture for the layering check: SQL in a form, and widgets outside the windows.
#include <QMessageBox>
// A comment naming SELECT is not SQL text.
void f() { db.ejecutar(QStringLiteral("DELETE FROM Tabla WHERE Id = ?"), {1}); }
void g() { buscar(t, {QStringLiteral("Padre = ?"), {2}}); }
void h() { avisar(QStringLiteral("¿Desea realmente eliminar el objeto seleccionado?")); }
