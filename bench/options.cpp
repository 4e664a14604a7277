// SPDX-License-Identifier: Apache-2.0
#include "bench/options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <optional>

#include "bench/builtin_answers.h"

namespace ventrik::bench {
namespace {

constexpr double kLongestHeartbeat = 86400;  // seconds

// A plain decimal number of seconds, none or a millisecond at least.
std::optional<std::chrono::milliseconds> ParseSeconds(const std::string& text) {
  double seconds = 0;
  const char* end = text.data() + text.size();
  const auto [stop, fault] = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
  const bool inRange = seconds == 0 || (seconds >= 0.001 && seconds <= kLongestHeartbeat);
  if (fault != std::errc() || stop != end || !inRange) return std::nullopt;
  return std::chrono::milliseconds(std::llround(seconds * 1000));
}

std::string CheckSeconds(std::string& text) {
  if (ParseSeconds(text)) return {};
  return "'" + text + "' is no number of seconds: 0, or 0.001 to 86400";
}

}  // namespace

CommandLineResult ParseCommandLine(int argc, const char* const* argv) {
  CommandLineResult result;
  Options& options = result.options;
  std::string heartbeat = "0";
  CLI::App app(
      "A stand-in navigation server: answers a tester's requests over a world of real places,\n"
      "until it gets SIGINT or SIGTERM.",
      "kelmora-bench");
  app.add_option("--name", options.name, "Serve under this name (navigation)")->type_name("NAME");
  app.add_option("--record", options.recordFile, "Record what is received, as a batch log")
      ->type_name("FILE");
  app.add_option("--scenario", options.scenarioFile, "Send what this JSON file says as well")
      ->type_name("FILE");
  app.add_flag("--blank", options.blank, "No built-in answers");
  app.add_option("--heartbeat", heartbeat,
                 "Send INFO_HEARTBEAT so often to each client that has sent REQU_INIT")
      ->type_name("SECONDS")
      ->check(CLI::Validator(CheckSeconds, ""));
  app.set_help_flag("--help", "Print this and exit");
  app.set_version_flag("--version", ProgramVersion(), "Print the version and exit");
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    result.output = app.help();
    return result;
  } catch (const CLI::CallForVersion&) {
    result.output = ProgramVersion() + "\n";
    return result;
  } catch (const CLI::ParseError& fault) {
    result.error = "kelmora-bench: " + std::string(fault.what()) + "\n" + app.help();
    return result;
  }
  result.run = true;
  options.heartbeat = *ParseSeconds(heartbeat);
  return result;
}

}  // namespace ventrik::bench
