#include "platform/ParallelBands.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace tessaly {
namespace {

RowBand band(std::int64_t index, std::int64_t rows, std::int64_t bands) {
  return {index, rows * index / bands, rows * (index + 1) / bands};
}

}  // namespace

int availableThreads() {
  return std::max(static_cast<int>(std::thread::hardware_concurrency()), 1);
}

std::int64_t bandCount(std::int64_t rows, int threads) {
  return std::clamp<std::int64_t>(rows, 0, std::max(threads, 1));
}

void forEachBand(std::int64_t rows, int threads, const std::function<void(const RowBand&)>& work) {
  const std::int64_t bands = bandCount(rows, threads);
  std::vector<std::exception_ptr> failures(static_cast<std::size_t>(bands));
  const auto perform = [&](std::int64_t index) {
    try {
      work(band(index, rows, bands));
    } catch (...) {
      failures[static_cast<std::size_t>(index)] = std::current_exception();
    }
  };
  {
    std::vector<std::jthread> helpers;
    helpers.reserve(static_cast<std::size_t>(std::max<std::int64_t>(bands - 1, 0)));
    for (std::int64_t index = 1; index < bands; ++index) {
      try {
        helpers.emplace_back(perform, index);
      } catch (const std::system_error&) {
        perform(index);
      }
    }
    if (bands > 0) perform(0);
  }
  for (const std::exception_ptr& failure : failures) {
    if (failure) std::rethrow_exception(failure);
  }
}

}  // namespace tessaly
