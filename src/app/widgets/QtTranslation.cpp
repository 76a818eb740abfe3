#include "app/widgets/QtTranslation.h"

#include "localization/Localization.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace tessaly {
namespace {

/// The name of Qt's catalogue; empty for English, in which its texts are written.
QString catalogue(AppLanguage language) {
  switch (language) {
    case AppLanguage::chinese:
      return QStringLiteral("qtbase_zh_CN");
    case AppLanguage::french:
      return QStringLiteral("qtbase_fr");
    case AppLanguage::system:
    case AppLanguage::english:
      break;
  }
  return {};
}

}  // namespace

void applyQtLanguage() {
  delete QCoreApplication::instance()->findChild<QTranslator*>();  // removes itself
  const QString name = catalogue(Localization::language());
  auto* translator = new QTranslator(QCoreApplication::instance());
  if (!name.isEmpty() && translator->load(name, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QCoreApplication::installTranslator(translator);
}

}  // namespace tessaly
