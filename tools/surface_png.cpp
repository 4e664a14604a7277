// SPDX-License-Identifier: Apache-2.0
// surface-png: saves a surface that a tester shares as a PNG file, to be looked at.
//
// Rows and alpha stay as they are shared: the first row is the northern edge, and what nobody drew
// on is transparent. The surface is read and nothing else, so this runs beside a tester and a
// server.
//
// Exit status 0, 1 if the surface couldn't be read or the file couldn't be written, or 2 if the
// arguments are wrong.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <string>

#include "bench/picture/png_file.h"
#include "bench/picture/shared_surface.h"

namespace {

using namespace ventrik::bench;

constexpr int kCannot = 1;
constexpr int kWrongArguments = 2;

struct Arguments {
  std::string sid;
  std::string folder;  // of the file
  std::string name;    // of the file in it
};

int Fail(int status, const std::string& reason) {
  std::fprintf(stderr, "surface-png: %s\n", reason.c_str());
  return status;
}

std::string CheckSid(std::string& sid) {
  return IsPlainFileName(sid) ? std::string() : "'" + sid + "' can't be the name of a surface";
}

std::string NameIn(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

std::string CheckFile(std::string& path) {
  return IsPlainFileName(NameIn(path)) ? std::string()
                                       : "'" + path + "' can't be the name of a file";
}

int Save(const Arguments& arguments) {
  std::string error;
  const auto picture = ReadSurface(arguments.sid, error);
  if (!picture) return Fail(kCannot, arguments.sid + ": " + error);
  if (!SavePng(arguments.folder, arguments.name, *picture, error)) return Fail(kCannot, error);
  return 0;
}

int Run(int argc, char** argv) {
  Arguments arguments;
  std::string file;
  CLI::App app(
      "Saves a surface that a tester shares, the memory object /SID of 640 by 480 pixels, as a "
      "PNG\n"
      "file. A file of that name is replaced.",
      "surface-png");
  app.add_option("SID", arguments.sid, "The surface, such as gwx_0")
      ->required()
      ->check(CLI::Validator(CheckSid, ""));
  app.add_option("FILE.png", file, "The file to write")
      ->required()
      ->check(CLI::Validator(CheckFile, ""));
  app.set_help_flag("--help", "Print this and exit");
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    std::printf("%s", app.help().c_str());
    return 0;
  } catch (const CLI::ParseError& thrown) {
    return Fail(kWrongArguments, std::string(thrown.what()) + "\n" + app.help());
  }
  arguments.name = NameIn(file);
  arguments.folder = file.substr(0, file.size() - arguments.name.size());
  if (arguments.folder.empty()) arguments.folder = ".";
  return Save(arguments);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& thrown) {
    return Fail(kCannot, thrown.what());
  }
}
