#include "app/widgets/SystemAppearance.h"

#include "app/widgets/Theme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QFileInfo>
#include <QStyle>
#include <QStyleFactory>
#include <memory>
#include <optional>
#include <utility>

namespace tessaly {
namespace {

constexpr const char* service = "org.freedesktop.portal.Desktop";
constexpr const char* object = "/org/freedesktop/portal/desktop";
constexpr const char* interface = "org.freedesktop.portal.Settings";
constexpr const char* appearanceGroup = "org.freedesktop.appearance";
constexpr const char* colorSchemeKey = "color-scheme";

// A portal that does not answer must not hold up the start of the program.
constexpr int answerTimeout = 300;

// Asking for the bus where there is none would try to launch one.
bool hasSessionBus() {
  if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")) return true;
  return QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

/// The innermost value: older portals wrap the answer in two variants.
QVariant unwrapped(QVariant value) {
  while (value.canConvert<QDBusVariant>())
    value = value.value<QDBusVariant>().variant();
  return value;
}

/// 1: dark preferred, 2: light preferred; nothing when the desktop does not say.
std::optional<uint> portalColorScheme() {
  if (!hasSessionBus()) return std::nullopt;
  QDBusMessage call = QDBusMessage::createMethodCall(service, object, interface, "Read");
  call << QString::fromLatin1(appearanceGroup) << QString::fromLatin1(colorSchemeKey);
  const QDBusMessage answer = QDBusConnection::sessionBus().call(call, QDBus::Block, answerTimeout);
  if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) return std::nullopt;
  const uint scheme = unwrapped(answer.arguments().constFirst()).toUInt();
  return scheme == 0 ? std::nullopt : std::optional<uint>(scheme);
}

}  // namespace

bool isPlatformOwned(const QPalette& palette) {
  const std::unique_ptr<QStyle> fusion(QStyleFactory::create("Fusion"));
  const QPalette own = fusion->standardPalette();
  for (const auto role : {QPalette::Window, QPalette::Base, QPalette::WindowText, QPalette::Highlight})
    if (palette.color(role) != own.color(role)) return true;
  return false;
}

bool prefersDark(const QPalette& platform) {
  constexpr uint darkScheme = 1;
  const std::optional<uint> scheme = portalColorScheme();
  return scheme ? *scheme == darkScheme : isDark(platform);
}

SystemAppearanceObserver::SystemAppearanceObserver(std::function<void()> changed, QObject* parent)
    : QObject(parent), changed_(std::move(changed)) {
  if (!hasSessionBus()) return;
  QDBusConnection::sessionBus().connect(service, object, interface, "SettingChanged", this,
                                        SLOT(settingChanged(QString, QString)));
}

void SystemAppearanceObserver::settingChanged(const QString& group, const QString& key) {
  if (group == QLatin1String(appearanceGroup) && key == QLatin1String(colorSchemeKey)) changed_();
}

}  // namespace tessaly
