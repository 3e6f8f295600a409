#pragma once

#include <QObject>

class QSocketNotifier;

namespace tavinor {

/// The signals by which a system asks a program to end (SIGTERM, SIGINT, SIGHUP), as a signal of Qt's. One
/// that the program was started without, as `nohup` does, stays without effect. Where there are none, nothing
/// is ever received. One object at a time.
class EndSignals : public QObject {
    Q_OBJECT

  public:
    EndSignals();
    ~EndSignals() override;

  signals:
    void received();

  private:
    void read();

    QSocketNotifier* notifier_ = nullptr;
};

}  // namespace tavinor
