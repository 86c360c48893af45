#include "toolkit/error_log.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iterator>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include "common/error.h"
#include "common/host.h"
#include "common/text_cells.h"

namespace kel {
namespace {

constexpr int kFirstYear = 1900;
constexpr int kNoon = 12;

// The user's word for the half of the day; many languages have none.
std::string DayHalf(const std::tm& time) {
  try {
    std::ostringstream text;
    const std::locale users("");
    std::use_facet<std::time_put<char>>(users).put(std::ostreambuf_iterator<char>(text), text, ' ',
                                                   &time, 'p');
    if (!text.str().empty()) return text.str();
  } catch (const std::runtime_error&) {
    // The environment names a locale that is not installed.
  }
  return time.tm_hour < kNoon ? "AM" : "PM";
}

// dd/mm/yyyy hh:mm:ss AMPM
std::string TimeText(const std::tm& time) {
  const int hour = time.tm_hour % kNoon == 0 ? kNoon : time.tm_hour % kNoon;
  std::array<char, 96> digits{};
  std::snprintf(digits.data(), digits.size(), "%02d/%02d/%04d %02d:%02d:%02d ", time.tm_mday,
                time.tm_mon + 1, time.tm_year + kFirstYear, hour, time.tm_min, time.tm_sec);
  return digits.data() + DayHalf(time);
}

void RequirePlainFile(const std::filesystem::path& log) {
  std::error_code failure;
  const auto kind = std::filesystem::symlink_status(log, failure).type();
  using std::filesystem::file_type;
  if (kind == file_type::regular || kind == file_type::not_found) return;
  throw Error(error_number::kPermissionDenied,
              "cannot write " + log.string() + ": it is not a plain file");
}

// A line is written whole or not at all.
void AppendLine(const std::filesystem::path& log, const std::string& line) {
  std::error_code absent;
  const auto size_before = std::filesystem::file_size(log, absent);
  errno = 0;
  std::ofstream file(log, std::ios::app | std::ios::binary);
  file.write(line.data(), static_cast<std::streamsize>(line.size()));
  file.close();
  if (file) return;
  const int reason = errno == 0 ? EIO : errno;
  std::error_code ignored;
  if (!absent) std::filesystem::resize_file(log, size_before, ignored);
  throw Error::FromSystem(reason, "cannot write " + log.string());
}

}  // namespace

void AppendToErrorLog(const std::filesystem::path& folder, std::string_view location,
                      std::string_view description) {
  const std::filesystem::path log = folder / kErrorLogName;
  RequirePlainFile(log);
  std::string line = TimeText(CurrentHost().clock->Now());
  line.append(",").append(location).append(",").append(CleanText(description)).append("\r\n");
  AppendLine(log, line);
}

}  // namespace kel
