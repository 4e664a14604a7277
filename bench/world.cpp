// SPDX-License-Identifier: Apache-2.0
#include "bench/world.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <iterator>

namespace ventrik::bench {
namespace {

constexpr double kEarthRadiusMetres = 6371008.8;
constexpr double kRadiansPerDegree = 0.017453292519943295;

constexpr std::size_t kFieldCount = 7;
using Fields = std::array<std::string_view, kFieldCount>;

// Digits up to the first other character; none if there are none or more than nine.
std::optional<std::uint32_t> TakeDigits(std::string_view& text) {
  std::uint32_t value = 0;
  std::size_t count = 0;
  while (count < text.size() && text[count] >= '0' && text[count] <= '9') {
    if (count == 9) return std::nullopt;
    value = value * 10 + static_cast<std::uint32_t>(text[count++] - '0');
  }
  if (count == 0) return std::nullopt;
  text.remove_prefix(count);
  return value;
}

// A whole text as a plain decimal number: "-0.12574", "48". The library's readers would follow the
// locale or take exponents.
std::optional<double> ParseDecimal(std::string_view text) {
  const bool negative = !text.empty() && text.front() == '-';
  if (negative) text.remove_prefix(1);
  const auto whole = TakeDigits(text);
  if (!whole) return std::nullopt;
  double value = *whole;
  if (!text.empty() && text.front() == '.') {
    text.remove_prefix(1);
    const std::size_t before = text.size();
    const auto fraction = TakeDigits(text);
    if (!fraction) return std::nullopt;
    value += *fraction / std::pow(10.0, static_cast<double>(before - text.size()));
  }
  if (!text.empty()) return std::nullopt;
  return negative ? -value : value;
}

std::optional<double> ParseDegrees(std::string_view text, double limit) {
  const auto degrees = ParseDecimal(text);
  if (!degrees || std::fabs(*degrees) > limit) return std::nullopt;
  return degrees;
}

// Five decimals, with a point in any locale.
std::string DegreesText(double degrees) {
  const long long units = std::llround(std::fabs(degrees) * 100000);
  const std::string decimals = std::to_string(units % 100000);
  const char* sign = degrees < 0 && units != 0 ? "-" : "";
  return sign + std::to_string(units / 100000) + '.' + std::string(5 - decimals.size(), '0') +
         decimals;
}

bool SplitFields(std::string_view line, Fields& fields) {
  for (std::size_t index = 0; index + 1 < kFieldCount; ++index) {
    const std::size_t tab = line.find('\t');
    if (tab == std::string_view::npos) return false;
    fields[index] = line.substr(0, tab);
    line.remove_prefix(tab + 1);
  }
  fields.back() = line;
  return line.find('\t') == std::string_view::npos;
}

bool IsCode(std::string_view code) {
  return code.size() == 2 && std::all_of(code.begin(), code.end(), [](char character) {
           return character >= 'A' && character <= 'Z';
         });
}

bool IsGoodName(const Name& name) {
  return !name.text.empty() && name.text.find_first_of("<>\"") == std::string::npos &&
         name.letters.find(U'\uFFFD') == std::u32string::npos;
}

template <class Item>
Item* FindNamed(std::vector<Item>& items, const Name& name) {
  const auto found = std::find_if(items.begin(), items.end(),
                                  [&name](const Item& item) { return SameName(item.name, name); });
  return found == items.end() ? nullptr : &*found;
}

// The country of that code and name, added if it is new; null if only one of the two is known.
Country* CountryOf(World& world, std::string_view code, const Name& name) {
  for (Country& country : world.countries) {
    if (country.code == code && country.name.text == name.text) return &country;
    if (country.code == code || SameName(country.name, name)) return nullptr;
  }
  return &world.countries.emplace_back(Country{std::string(code), name, 0, {}});
}

State& StateOf(Country& country, const Name& name) {
  if (State* known = FindNamed(country.states, name)) return *known;
  return country.states.emplace_back(State{name, 0, {}});
}

// Adds one line's place. The result is what is wrong with it, null if nothing.
const char* AddPlace(World& world, std::string_view line) {
  Fields fields;
  if (!SplitFields(line, fields)) return "not seven fields";
  if (!IsCode(fields[0])) return "bad country code";
  const Name names[] = {MakeName(fields[1]), MakeName(fields[2]), MakeName(fields[3])};
  if (!std::all_of(std::begin(names), std::end(names), IsGoodName)) return "bad name";
  const auto latitude = ParseDegrees(fields[4], 90);
  if (!latitude) return "bad latitude";
  const auto longitude = ParseDegrees(fields[5], 180);
  if (!longitude) return "bad longitude";
  const auto population = TakeDigits(fields[6]);
  if (!population || !fields[6].empty()) return "bad population";

  Country* country = CountryOf(world, fields[0], names[0]);
  if (country == nullptr) return "country under two codes or names";
  State& state = StateOf(*country, names[1]);
  if (FindNamed(state.towns, names[2]) != nullptr) return "town given twice";
  state.towns.push_back(Town{names[2], Position{*longitude, *latitude}, *population});
  state.population += *population;
  country->population += *population;
  return nullptr;
}

}  // namespace

double DistanceMetres(const Position& from, const Position& to) {
  const double fromLatitude = from.latitude * kRadiansPerDegree;
  const double toLatitude = to.latitude * kRadiansPerDegree;
  const double halfLatitude = std::sin((toLatitude - fromLatitude) / 2);
  const double halfLongitude = std::sin((to.longitude - from.longitude) * kRadiansPerDegree / 2);
  const double chord = halfLatitude * halfLatitude + std::cos(fromLatitude) * std::cos(toLatitude) *
                                                         halfLongitude * halfLongitude;
  return 2 * kEarthRadiusMetres * std::asin(std::sqrt(std::min(1.0, chord)));
}

std::optional<Position> ParsePosition(std::string_view text) {
  const std::size_t blank = text.find(' ');
  if (blank == std::string_view::npos) return std::nullopt;
  const auto longitude = ParseDegrees(text.substr(0, blank), 180);
  const auto latitude = ParseDegrees(text.substr(blank + 1), 90);
  if (!longitude || !latitude) return std::nullopt;
  return Position{*longitude, *latitude};
}

std::string PositionText(const Position& position) {
  return DegreesText(position.longitude) + ' ' + DegreesText(position.latitude);
}

std::optional<World> World::Parse(std::string_view text, std::string& error) {
  World world;
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.empty() || line.front() == '#') continue;
    if (const char* reason = AddPlace(world, line)) {
      error = "line " + std::to_string(number) + ": " + reason;
      return std::nullopt;
    }
  }
  if (world.countries.empty()) {
    error = "no places";
    return std::nullopt;
  }
  return world;
}

std::optional<World> LoadWorld(const std::string& path, std::string& error) {
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file.is_open() || file.bad()) {
    error = path + ": can not be read";
    return std::nullopt;
  }
  auto world = World::Parse(text, error);
  if (!world) error = path + ": " + error;
  return world;
}

}  // namespace ventrik::bench
