// The fields of the records that describe a sensor's geometry, with their JSON keys: once for every JSON form that
// holds such a record, and for both directions.
//
// forEachField(record, visit) calls visit(key, field) in the order in which fields are written and checked; the record
// may be constant.
#pragma once

#include "dng/DNGMetadata.h"

#include <concepts>
#include <type_traits>

namespace tessaly {

template <typename Type, typename Record>
concept Either = std::same_as<std::remove_const_t<Type>, Record>;

template <Either<RawRectangle> Record, typename Visitor>
void forEachField(Record& record, Visitor visit) {
  visit("x", record.x);
  visit("y", record.y);
  visit("width", record.width);
  visit("height", record.height);
}

template <Either<CFALayout> Record, typename Visitor>
void forEachField(Record& record, Visitor visit) {
  visit("width", record.width);
  visit("height", record.height);
  visit("pattern", record.pattern);
}

}  // namespace tessaly
