// The fields of each record with their keys, once, for both directions of the JSON form; those of the records inside
// are in dng/SensorFields.h, which tells how to use them.
#pragma once

#include "dng/SensorFields.h"
#include "dng/tiff/TIFFDirectory.h"

namespace tessaly {

template <Either<TIFFField> Record, typename Visitor>
void forEachField(Record& record, Visitor visit) {
  visit("tag", record.tag);
  visit("type", record.type);
  visit("count", record.count);
  visit("entry", record.entry);
  visit("location", record.location);
  visit("size", record.size);
}

template <Either<DNGSourceEncoding> Record, typename Visitor>
void forEachField(Record& record, Visitor visit) {
  visit("littleEndian", record.littleEndian);
  visit("ifdOffset", record.ifdOffset);
  visit("parentPointer", record.parentPointer);
  visit("offsets", record.offsets);
  visit("byteCounts", record.byteCounts);
  visit("tileWidth", record.tileWidth);
  visit("tileHeight", record.tileHeight);
  visit("fillOrder", record.fillOrder);
  visit("linearization", record.linearization);
  visit("blackLevels", record.blackLevels);
  visit("blackRepeat", record.blackRepeat);
  visit("blackDeltaH", record.blackDeltaH);
  visit("blackDeltaV", record.blackDeltaV);
  visit("whiteLevels", record.whiteLevels);
  visit("activeArea", record.activeArea);
  visit("crop", record.crop);
  visit("maskedAreas", record.maskedAreas);
}

template <Either<DNGMetadata> Record, typename Visitor>
void forEachField(Record& record, Visitor visit) {
  visit("sourceEncoding", record.sourceEncoding);
  visit("cameraSerial", record.cameraSerial);
  visit("make", record.make);
  visit("model", record.model);
  visit("rawWidth", record.rawWidth);
  visit("rawHeight", record.rawHeight);
  visit("rawOffset", record.rawOffset);
  visit("rawByteCount", record.rawByteCount);
  visit("activeX", record.activeX);
  visit("activeY", record.activeY);
  visit("activeWidth", record.activeWidth);
  visit("activeHeight", record.activeHeight);
  visit("blackLevel", record.blackLevel);
  visit("whiteLevel", record.whiteLevel);
  visit("bitsPerSample", record.bitsPerSample);
  visit("compression", record.compression);
  visit("samplesPerPixel", record.samplesPerPixel);
  visit("photometricInterpretation", record.photometricInterpretation);
  visit("rowsPerStrip", record.rowsPerStrip);
  visit("packing", record.packing);
  visit("cfaLayout", record.cfaLayout);
  visit("iso", record.iso);
  visit("exposureSeconds", record.exposureSeconds);
}

}  // namespace tessaly
