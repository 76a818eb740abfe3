#include "cli/RepairSources.h"

#include "cli/Failures.h"
#include "platform/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <iostream>
#include <iterator>
#include <system_error>

namespace tessaly::cli {
namespace {

namespace fs = std::filesystem;

/// So many pairs of sources that meet are named.
constexpr std::size_t namedMeetings = 5;

std::optional<std::int64_t> positiveNumber(std::string_view text) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isWhole = error == std::errc() && end == text.data() + text.size();
  return isWhole && number > 0 ? std::optional(number) : std::nullopt;
}

std::optional<Shard> parseShard(const std::string& text) {
  if (text.empty()) return std::nullopt;
  const std::size_t slash = text.find('/');
  const auto number = positiveNumber(std::string_view(text).substr(0, slash));
  const auto count =
      slash == std::string::npos ? std::nullopt : positiveNumber(std::string_view(text).substr(slash + 1));
  if (!number || !count || *number > *count)
    throw UsageError("--shard: " + displayText(text) + " is not K/N with K from 1 to N");
  return Shard{*number, *count};
}

std::string contentsOf(const std::string& list) {
  std::ifstream file;
  if (list != "-") file.open(list, std::ios::binary);
  std::istream& stream = list == "-" ? std::cin : file;
  errno = 0;
  std::string text(std::istreambuf_iterator<char>(stream), {});
  std::error_code ignored;
  const int number = fs::is_directory(list, ignored) ? EISDIR : errno;
  if (list != "-" && (!file.is_open() || number == EISDIR))
    throw CommandFailure(std::system_error(number == 0 ? EIO : number, std::generic_category()), subjectName(list));
  return text;
}

void appendNames(const std::string& text, char end, std::vector<fs::path>& names) {
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t stop = std::min(text.find(end, start), text.size());
    if (stop > start) names.emplace_back(text.substr(start, stop - start));
    start = stop + 1;
  }
}

SourceListing listingOf(const RepairSources& sources, const fs::path& output) {
  if (sources.isSelection) return listSelection(sources.selection(output));
  const fs::path& source = sources.named.front();
  if (sources.isFolder) return listSourceFiles(source);
  return {{source}, {}, {}};
}

}  // namespace

std::size_t RepairSources::ownCount() const {
  return shard ? shardOf(listing, *shard).files.size() : listing.files.size();
}

SourceSelection RepairSources::selection(const fs::path& output) const {
  return {named, isRecursive, output};
}

RepairSources namedSources(const SourceArguments& arguments) {
  RepairSources sources;
  sources.shard = parseShard(arguments.shard);
  sources.isRecursive = arguments.isRecursive;
  sources.named.assign(arguments.sources.begin(), arguments.sources.end());
  if (!arguments.list.empty())
    appendNames(contentsOf(arguments.list), arguments.endsInNul ? '\0' : '\n', sources.named);
  sources.isSelection = arguments.isRecursive || !arguments.list.empty() || sources.named.size() > 1;
  std::error_code error;
  sources.isFolder = sources.named.size() == 1 && fs::is_directory(sources.named.front(), error);
  return sources;
}

void listFiles(RepairSources& sources, const fs::path& output) {
  try {
    sources.listing = listingOf(sources, output);
  } catch (const std::exception&) {
    sources.listing = {};
  }
}

void refuseMeetings(const RepairSources& sources) {
  if (!sources.isSelection) return;
  const std::vector<MeetingSources> meetings = meetingSources(sources.listing);
  if (meetings.empty()) return;
  std::string names;
  for (std::size_t i = 0; i < std::min(meetings.size(), namedMeetings); ++i) {
    names += fmt::format("{}{} and {}", i == 0 ? "" : ", ", displayText(meetings[i].first.native()),
                         displayText(meetings[i].second.native()));
  }
  if (meetings.size() > namedMeetings) names += fmt::format(" and {} more", meetings.size() - namedMeetings);
  throw UsageError("Copies would get the same name: " + names);
}

}  // namespace tessaly::cli
