// How well the second opinion finds what is wrong with a simulated body: found and missed by kind and strength, false
// by finder, and what it says about documented partial columns.
#pragma once

#include "calibration/CalibrationRecords.h"
#include "tools/BodySession.h"
#include "tools/SensorBody.h"

#include <map>
#include <string>

namespace tessaly::tools {

/// Of one kind and strength.
struct Recall {
  int planted = 0;
  int found = 0;
  int endsRight = 0;  ///< partial columns: found with at least three quarters of the rows in common

  Recall& operator+=(const Recall& other);
};

/// Of one finder.
struct Precision {
  int right = 0;
  int wrong = 0;

  Precision& operator+=(const Precision& other);
  [[nodiscard]] double share() const { return right + wrong == 0 ? 1 : static_cast<double>(right) / (right + wrong); }
};

/// Documented partial columns.
struct Referee {
  int trueConfirmed = 0;
  int trueDenied = 0;
  int falseConfirmed = 0;
  int falseDenied = 0;

  Referee& operator+=(const Referee& other);
};

struct SecondOpinionScore {
  std::map<std::string, Recall> recall;        ///< by "kind, strength"
  std::map<std::string, Precision> precision;  ///< by finder
  Referee referee;

  SecondOpinionScore& operator+=(const SecondOpinionScore& other);
  [[nodiscard]] int falseFindings() const;
  /// The recall of all rows whose name begins like this, as a share.
  [[nodiscard]] double recallOf(const std::string& beginning) const;
};

[[nodiscard]] SecondOpinionScore scoreOf(const SensorBody& body, double fNumber, const CalibrationResult& result);

/// A table of it for people.
[[nodiscard]] std::string table(const SecondOpinionScore& score);

/// Which body and evening.
struct SecondOpinionTrial {
  BodyDescription description;
  SessionKind session = SessionKind::usual;
  bool isHealthy = false;
};

/// Writes the session into a folder of its own that is removed again, analyses it with both opinions and scores that.
[[nodiscard]] SecondOpinionScore scoreOf(const SecondOpinionTrial& trial);

}  // namespace tessaly::tools
