#pragma once
// Who has an SQLite database open, told by the operating system. Every program that opens
// the database holds a shared lock on the file beside it ("Pramelvix.mdb.uso") for as long as
// it keeps it open; replacing the database file (the repair, the compaction) needs the
// exclusive lock, which the system grants only while nobody else holds the shared one, and
// holds it until the new file is in place. A program that starts meanwhile waits for it
// and then opens the new file. The lock goes with the process, also when it is killed.
#include <QString>

class UsoFicheroBD {
public:
    explicit UsoFicheroBD(const QString& ficheroBD);
    ~UsoFicheroBD();
    UsoFicheroBD(const UsoFicheroBD&) = delete;
    UsoFicheroBD& operator=(const UsoFicheroBD&) = delete;

    // Waits up to esperaMs for the shared lock; false when the file is being replaced.
    bool compartir(int esperaMs);
    // The exclusive lock, at once or not at all: false while another program has the
    // database open.
    bool exclusivo();
    void soltar();

private:
    QString ruta_;
    int fd_ = -1;
};
