#include "presentation/SensorReport.h"

#include "calibration/review/SensorFigures.h"
#include "localization/Localization.h"
#include "presentation/CalibrationTexts.h"
#include "presentation/CandidateTexts.h"
#include "presentation/NumberTexts.h"
#include "presentation/ReportPage.h"
#include "presentation/ReportPlot.h"
#include "presentation/SecondOpinionTexts.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>

namespace tessaly::SensorReport {
namespace {

using Finder = SecondOpinionFinding::Finder;
using NumberTexts::significant;

constexpr double longestFraction = 0.3;  // seconds that are told as 1/n

std::string filled(const char* format, const std::optional<double>& value, double factor = 1) {
  return value ? LF(format, {significant(*value * factor)}) : L("not measured");
}

ReportTable figuresTable(const SensorFigures& figures) {
  return {{},
          {{L("Read noise"), filled("%@ electrons", figures.readNoise)},
           {L("Gain at ISO 100"), filled("%@ electrons per u", figures.electronsPerUnit)},
           {L("Electrons that fill the raw range at ISO 100"), filled("%@ electrons", figures.fullRange)},
           {L("Spread of response"), filled("%@%% of the light", figures.responseSpread, 100)},
           {L("Noise of the best bright frames"), filled("%@%% of the light", figures.lightNoise, 100)}}};
}

std::string name(const SettingFigures& setting) {
  return LF(setting.isDark ? "Dark, %@" : "Bright, %@", {exposure(setting)});
}

/// A strength in the unit of its setting.
std::string strength(const SettingFigures& setting, double value) {
  return setting.isDark ? LF("%@ u", {significant(value)}) : LF("%@%% of the light", {significant(value * 100)});
}

std::vector<std::string> settingRow(const SettingFigures& setting) {
  const std::string frames = fmt::format("{}", setting.frames);
  if (setting.isClipped) return {name(setting), frames, L("clipped"), "", ""};
  const std::string light = setting.isDark ? "" : LF("%@ u", {significant(setting.level)});
  return {name(setting), frames, light, strength(setting, setting.noise), strength(setting, setting.spread)};
}

ReportTable settingsTable(const std::vector<SettingFigures>& settings) {
  ReportTable table{{L("Exposure setting"), L("Frames"), L("Light level"), L("Noise"), L("Photosites differ by")}, {}};
  table.rows.reserve(settings.size());
  for (const SettingFigures& setting : settings)
    table.rows.push_back(settingRow(setting));
  return table;
}

LogPlot departures(const std::vector<SettingFigures>& settings, bool isDark) {
  LogPlot plot{isDark ? L("departure, u") : L("departure, % of the light"), L("photosites"), {}};
  for (const SettingFigures& setting : settings) {
    if (setting.isDark != isDark || setting.departing.empty()) continue;
    PlotSeries series{exposure(setting), {}};
    series.points.reserve(setting.departing.size());
    for (const StrengthCount& count : setting.departing)
      series.points.push_back({count.strength * (isDark ? 1 : 100), static_cast<double>(count.photosites)});
    plot.series.push_back(std::move(series));
  }
  return plot;
}

void addDepartures(const std::vector<SettingFigures>& settings, bool isDark, ReportPage& page) {
  const std::string drawing = departures(settings, isDark).svg();
  if (drawing.empty()) return;
  page.heading(isDark ? L("Departures in the dark") : L("Departures in light"));
  page.figure(drawing, L("How many photosites depart from their neighbours by at least so much. A sound sensor falls "
                         "off steeply; defects are the long tail to the right."));
}

std::vector<std::string> documentedRow(const CalibrationResult& result, CandidateTexts::Kind kind) {
  std::int64_t found = 0;
  std::int64_t confirmed = 0;
  for (std::size_t i = 0; i < result.candidates.size(); ++i) {
    if (CandidateTexts::kindOf(result.candidates[i], result.metadata) != kind) continue;
    ++found;
    confirmed += result.secondOpinion->confirmed[i] == true ? 1 : 0;
  }
  const std::string title = fmt::format("{} ({})", L(CandidateTexts::name(kind)), L("documented"));
  return {title, fmt::format("{}", found), fmt::format("{}", confirmed)};
}

std::vector<std::string> findingsRow(const CalibrationResult& result, Finder finder, const std::string& title) {
  const auto& findings = result.secondOpinion->findings;
  const auto count = std::count_if(findings.begin(), findings.end(),
                                   [finder](const SecondOpinionFinding& finding) { return finding.finder == finder; });
  return {title, fmt::format("{}", count), ""};
}

ReportTable defectsTable(const CalibrationResult& result) {
  ReportTable table{{L("Defects"), L("Found"), L("of them confirmed")}, {}};
  for (const CandidateTexts::Kind kind : CandidateTexts::kinds)
    table.rows.push_back(documentedRow(result, kind));
  table.rows.push_back(findingsRow(result, Finder::dim, L("Dim or bright pixels")));
  table.rows.push_back(findingsRow(result, Finder::warm, L("Warm pixels")));
  table.rows.push_back(findingsRow(result, Finder::unsteady, L("Unsteady pixels")));
  table.rows.push_back(findingsRow(result, Finder::column, L("Weak columns")));
  table.rows.push_back(findingsRow(result, Finder::run, L("Weak partial columns")));
  table.rows.push_back(findingsRow(result, Finder::shadow, L("Soft shadows")));
  return table;
}

std::string secondsText(double seconds) {
  if (seconds >= longestFraction || seconds <= 0) return fmt::format("{} s", significant(seconds));
  return fmt::format("1/{} s", std::llround(1 / seconds));
}

}  // namespace

std::string exposure(const SettingFigures& setting) {
  std::vector<std::string> parts;
  if (setting.iso) parts.push_back(fmt::format("ISO {}", *setting.iso));
  if (setting.exposureSeconds) parts.push_back(secondsText(*setting.exposureSeconds));
  if (setting.fNumber) parts.push_back("f/" + NumberTexts::decimal(*setting.fNumber, *setting.fNumber < 10 ? 1 : 0));
  return fmt::format("{}", fmt::join(parts, ", "));
}

std::string page(const CalibrationResult& result) {
  const std::vector<SettingFigures>& settings = result.secondOpinion->settings;
  ReportPage page(L("Sensor Report"));
  page.paragraph(CalibrationTexts::camera(result.metadata));
  page.heading(L("Figures of the sensor"));
  page.table(figuresTable(sensorFigures(settings)));
  page.paragraph(L(
      "u is a raw unit of a 14-bit range. The gain follows from how the noise of bright frames grows with their light "
      "(photon transfer, as in EMVA 1288)."));
  page.heading(L("Frames"));
  page.table(settingsTable(settings));
  if (const std::string lack = SecondOpinionTexts::lackText(settings); !lack.empty()) page.paragraph(lack);
  addDepartures(settings, true, page);
  addDepartures(settings, false, page);
  page.heading(L("Defects"));
  page.table(defectsTable(result));
  return page.html();
}

}  // namespace tessaly::SensorReport
