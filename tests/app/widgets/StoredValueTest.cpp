#include "app/widgets/StoredValue.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <QByteArray>
#include <QRect>
#include <QStringList>

namespace tessaly::tests {
namespace {

using nlohmann::json;

QVariant throughTheFile(const QVariant& value) {
  return shownValue(json::parse(storedValue(value).dump()));
}

TEST(StoredValue, ComesBackAsItWas) {
  EXPECT_EQ(throughTheFile(true), QVariant(true));
  EXPECT_EQ(throughTheFile(-7).toInt(), -7);
  EXPECT_EQ(throughTheFile(QStringLiteral("照片")).toString(), QStringLiteral("照片"));
  EXPECT_EQ(throughTheFile(QRect(-5, 6, 700, 800)).toRect(), QRect(-5, 6, 700, 800));
  EXPECT_EQ(throughTheFile(QVariantList{1, 20}).toList().at(1).toInt(), 20);
  for (const QByteArray& bytes : {QByteArray("/a b"), QByteArray("\0\xff\x80", 3), QByteArray("")})
    EXPECT_EQ(throughTheFile(bytes).toByteArray(), bytes);
  EXPECT_FALSE(throughTheFile(QVariant()).isValid());
}

TEST(StoredValue, ReadsWhateverSomebodyWrote) {
  EXPECT_FALSE(shownValue(json::parse(R"({"x": 1})")).toRect().isValid());
  EXPECT_FALSE(shownValue(json::parse(R"({"x": "a", "y": null, "width": [3], "height": 4})")).toRect().isValid());
  EXPECT_EQ(shownValue(json::parse(R"({"x": 2147483647, "width": 2147483647})")).toRect().width(), 1'000'000);
  EXPECT_EQ(shownValue(json::parse("1e300")).typeId(), QMetaType::Double);
  EXPECT_EQ(shownValue(json::parse(R"(["a", {"b": 1}, null])")).toList().size(), 3);
}

}  // namespace
}  // namespace tessaly::tests
