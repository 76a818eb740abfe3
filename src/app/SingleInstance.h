// One window for one user, one display and one TESSALY_HOME: a second start asks the first to come forward.
//
// The name is a socket in Linux' abstract namespace: the system gives it to one process only and takes it back when
// that process ends, however it ends. User-interface thread only.
#pragma once

#include <QObject>
#include <chrono>
#include <string>

namespace tessaly {

class SingleInstance : public QObject {
  Q_OBJECT

 public:
  /// Takes the name. When another process of this user has it, that one is asked to come forward instead.
  explicit SingleInstance(const std::string& name);
  ~SingleInstance() override;

  /// Whether another process has the name and has answered: this one is not needed.
  [[nodiscard]] bool isSecond() const { return isSecond_; }

  /// What tells one window's place from another's: user, display and the folder of profiles and settings.
  [[nodiscard]] static std::string nameHere();

  /// How long a second start waits for the first to answer before it goes its own way.
  static constexpr std::chrono::seconds patience{5};

 signals:
  /// A later start asks this one to come forward.
  void wanted();

 private:
  void listen();
  void answer();

  int socket_ = -1;
  bool isSecond_ = false;
};

}  // namespace tessaly
