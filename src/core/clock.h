#pragma once
// "Today" and "now" come from here, so that tests can fix them.
#include <QDateTime>

class Clock {
public:
    virtual ~Clock() = default;
    virtual QDateTime ahora() const = 0;
    QDate hoy() const { return ahora().date(); }
};

class SystemClock final : public Clock {
public:
    QDateTime ahora() const override { return QDateTime::currentDateTime(); }
};

class FixedClock final : public Clock {
public:
    explicit FixedClock(QDateTime momento) : momento_(std::move(momento)) {}
    QDateTime ahora() const override { return momento_; }
    void fijar(const QDateTime& momento) { momento_ = momento; }
    void avanzar(qint64 segundos) { momento_ = momento_.addSecs(segundos); }

private:
    QDateTime momento_;
};
