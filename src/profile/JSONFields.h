// One JSON object that is met while a text streams by: what it holds for the keys that are asked for, and the reader
// that hands these values out as what they must be.
//
// Used by one thread.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

namespace tessaly {

/// A number as it is spelt, or none; says so in the words of the JSON library (see platform/JSONNumbers.h).
struct JSONNumber {
  std::variant<std::monostate, std::int64_t, std::uint64_t, double> value;

  [[nodiscard]] bool is_number() const { return value.index() != 0; }
  [[nodiscard]] bool is_number_integer() const { return std::holds_alternative<std::int64_t>(value); }
  [[nodiscard]] bool is_number_unsigned() const { return std::holds_alternative<std::uint64_t>(value); }
  [[nodiscard]] bool is_number_float() const { return std::holds_alternative<double>(value); }

  template <typename Number>
  [[nodiscard]] Number get() const {
    const auto converted = [](auto number) {
      if constexpr (std::is_arithmetic_v<decltype(number)>) {
        return static_cast<Number>(number);
      } else {
        return Number();
      }
    };
    return std::visit(converted, value);
  }
};

/// A value of an object. Of what is inside an array or an object only `bytes` are kept, and those where they are asked
/// for.
struct JSONField {
  enum class Kind { missing, null, boolean, number, text, array, object };

  std::string_view key;
  Kind kind = Kind::missing;
  JSONNumber number = {};  ///< none for all other kinds
  std::string text = {};
  std::vector<std::uint8_t> bytes = {};  ///< of an array of small numbers
  bool holdsOtherThanBytes = false;
};

/// The fields of objects of one kind, one object after the other. Other keys are passed over; the last of a repeated
/// key counts.
class JSONFields {
 public:
  JSONFields(std::initializer_list<const char*> keys);

  /// Forgets the object before.
  void clear();

  /// The field that the next value belongs to; null for a key that nobody asks for.
  [[nodiscard]] JSONField* find(std::string_view key);

  [[nodiscard]] const JSONField& at(std::string_view key) const;

 private:
  std::vector<JSONField> fields_;
};

/// Hands out the values of an object; throws ProfileDecodingError with the place of what is not as it must be.
class JSONObjectReader {
 public:
  /// The value of a key, or element `index` of an array.
  JSONObjectReader(const JSONFields& fields, const char* name, std::int64_t index = -1)
      : fields_(fields), name_(name), index_(index) {}

  [[nodiscard]] std::int64_t integer(const char* key) const;
  [[nodiscard]] double number(const char* key) const;
  [[nodiscard]] const std::string& text(const char* key) const;
  [[nodiscard]] const std::vector<std::uint8_t>& bytes(const char* key) const;

  void requireArray(const char* key) const;

  /// The object at a key, of which `fields` were kept.
  [[nodiscard]] JSONObjectReader object(const char* key, const JSONFields& fields) const;

  /// Whether an optional key is present with a value.
  [[nodiscard]] bool has(const char* key) const;

  [[noreturn]] void fail(const char* key, const char* problem) const;

 private:
  [[nodiscard]] const JSONField& required(const char* key) const;

  const JSONFields& fields_;
  const char* name_;
  std::int64_t index_;
};

/// "pixels[3]", or the name alone without an index.
[[nodiscard]] std::string jsonPlace(const char* name, std::int64_t index);

}  // namespace tessaly
