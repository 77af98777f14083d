#pragma once
// A termination request from the system (SIGTERM, SIGINT, SIGHUP) closes the program
// through its normal closing, so that the workstation leaves the active table.
#include <QObject>
#include <functional>

class QSocketNotifier;

class AvisoTerminar : public QObject {
    Q_OBJECT
public:
    explicit AvisoTerminar(std::function<void()> alTerminar, QObject* padre = nullptr);
    ~AvisoTerminar() override;
    // Becomes readable once a termination was asked for (and stays so), so that a
    // blocking read can give up.
    int descriptor() const;
    void setAlTerminar(std::function<void()> alTerminar) { alTerminar_ = std::move(alTerminar); }

private:
    void recibido();
    std::function<void()> alTerminar_;
    QSocketNotifier* notificador_ = nullptr;
};
