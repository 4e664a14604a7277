// SPDX-License-Identifier: Apache-2.0
#include "bench/options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <map>
#include <optional>

#include "bench/model/system.h"

namespace ventrik::bench {
namespace {

constexpr double kLongestHeartbeat = 86400;  // seconds

// A plain decimal number of seconds, none or a millisecond at least.
std::optional<std::chrono::milliseconds> ParseSeconds(const std::string& text) {
  double seconds = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
  const bool inRange = seconds == 0 || (seconds >= 0.001 && seconds <= kLongestHeartbeat);
  if (error != std::errc() || stop != end || !inRange) return std::nullopt;
  return std::chrono::milliseconds(std::llround(seconds * 1000));
}

std::string CheckSeconds(std::string& text) {
  if (ParseSeconds(text)) return {};
  return "'" + text + "' is no number of seconds: 0, or 0.001 to 86400";
}

// A plain decimal number of 32 bits.
std::optional<std::uint32_t> ParseSeed(const std::string& text) {
  std::uint32_t seed = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, seed);
  if (error != std::errc() || stop != end) return std::nullopt;
  return seed;
}

std::string CheckSeed(std::string& text) {
  if (ParseSeed(text)) return {};
  return "'" + text + "' is no seed: 0 to 4294967295";
}

std::string CheckFault(std::string& text) {
  std::string error;
  return ParseFault(text, error) ? std::string() : error;
}

const std::map<std::string, LogFormat> kLogFormats = {{"text", LogFormat::text},
                                                      {"json", LogFormat::json}};

}  // namespace

CommandLineResult ParseCommandLine(int argc, const char* const* argv) {
  CommandLineResult result;
  Options& options = result.options;
  std::string heartbeat = "0";
  std::string seed;
  std::vector<std::string> faults;
  CLI::App app(
      "A stand-in navigation server: answers a tester's requests over a world of real places,\n"
      "until it gets SIGINT or SIGTERM.",
      "kelmora-bench");
  app.add_option("--name", options.name, "Serve under this name (navigation)")->type_name("NAME");
  app.add_option("--record", options.recordFile, "Record what is received, as a batch log")
      ->type_name("FILE");
  CLI::Option* scenario =
      app.add_option("--scenario", options.scenarioFile, "Send what this JSON file says as well")
          ->type_name("FILE");
  app.add_flag("--check", options.check, "Tell whether the scenario is right, and exit")
      ->needs(scenario);
  app.add_flag("--blank", options.blank, "No built-in answers");
  app.add_option("--heartbeat", heartbeat,
                 "Send INFO_HEARTBEAT so often to each client that has sent REQU_INIT")
      ->type_name("SECONDS")
      ->check(CLI::Validator(CheckSeconds, ""));
  app.add_option("--log", options.logFile, "Tell every message as it passes; - is standard output")
      ->type_name("FILE");
  app.add_option("--log-format", options.logFormat, "text, or json for a JSON object on each line")
      ->transform(CLI::CheckedTransformer(kLogFormats))
      ->type_name("FORMAT");
  app.add_option("--picture-dir", options.pictureFolder, "Write screen shots into this folder")
      ->check(CLI::ExistingDirectory)
      ->type_name("FOLDER");
  app.add_option("--overlay-dir", options.overlayFolder,
                 "Write overlay surfaces as pictures into this folder")
      ->check(CLI::ExistingDirectory)
      ->type_name("FOLDER");
  app.add_flag("--exit-on-shutdown", options.exitOnShutdown, "End when a client shuts down");
  app.add_option("--fault", faults, "Do this wrong, on purpose; may be given several times")
      ->type_name("KIND,CONDITION=VALUE,...")
      ->check(CLI::Validator(CheckFault, ""));
  app.add_option("--seed", seed, "Repeat what chance brought with this seed")
      ->type_name("NUMBER")
      ->check(CLI::Validator(CheckSeed, ""));
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
  } catch (const CLI::ParseError& thrown) {
    result.error = "kelmora-bench: " + std::string(thrown.what()) + "\n" + app.help();
    return result;
  }
  result.run = true;
  options.heartbeat = *ParseSeconds(heartbeat);
  options.seed = ParseSeed(seed);
  std::string error;
  for (const std::string& fault : faults) options.faults.push_back(*ParseFault(fault, error));
  return result;
}

}  // namespace ventrik::bench
