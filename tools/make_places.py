#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes the bench engine's world, bench/world/places.tsv, out of GeoNames data.

The input is what Debian's geonames packages hold: the city table of libgeonames0, taken out of the
library with `gresource extract`, and the translation catalogues of libgeonames-common.
bench/world/SOURCE.md has the commands.

The city table is a serialized array of (ssssssudd)-like records, little-endian: GeoNames number,
name, state code, state name, country code, country name, time zone, then population (32 bits,
aligned to 4), latitude and longitude (doubles, aligned to 8). A record starts at a multiple of 8;
the 32-bit words at the file's end tell where each record ends, and the last of them tells where
that table of words begins.
"""

import argparse
import gettext
import pathlib
import struct
import sys
import unicodedata

# The countries of the world, each with the language in which its towns are named; None keeps the
# name that GeoNames has.
COUNTRIES = {
    "AT": "de", "BE": None, "CA": None, "CH": None, "CZ": "cs", "DE": "de", "ES": None,
    "FR": "fr", "GB": None, "HU": "hu", "IT": "it", "NL": "nl", "PL": "pl", "US": None,
}

# States that GeoNames has under an English or a formal name: what is written on the spot.
STATES = {
    "AT": {
        "Carinthia": "Kärnten", "Lower Austria": "Niederösterreich", "Styria": "Steiermark",
        "Tyrol": "Tirol", "Upper Austria": "Oberösterreich", "Vienna": "Wien",
    },
    "BE": {
        "Brussels Capital": "Bruxelles", "Flemish Region": "Vlaanderen",
        "Walloon Region": "Wallonie",
    },
    "CA": {"Quebec": "Québec", "Yukon Territory": "Yukon"},
    "CH": {
        "Canton Ticino": "Ticino", "Canton of Aargau": "Aargau",
        "Canton of Appenzell Ausserrhoden": "Appenzell Ausserrhoden",
        "Canton of Basel-City": "Basel-Stadt", "Canton of Bern": "Bern",
        "Canton of Fribourg": "Fribourg", "Canton of Geneva": "Genève",
        "Canton of Lucerne": "Luzern", "Canton of Neuchâtel": "Neuchâtel",
        "Canton of Schaffhausen": "Schaffhausen", "Canton of Solothurn": "Solothurn",
        "Canton of St. Gallen": "St. Gallen", "Canton of Vaud": "Vaud", "Canton of Zug": "Zug",
        "Canton of Zurich": "Zürich", "Grisons": "Graubünden",
    },
    "CZ": {
        "Central Bohemia": "Středočeský kraj", "Hlavní město Praha": "Praha",
        "Moravskoslezský": "Moravskoslezský kraj", "Olomoucký": "Olomoucký kraj",
        "Pardubický": "Pardubický kraj", "South Moravian": "Jihomoravský kraj",
        "Vysočina": "Kraj Vysočina", "Zlín": "Zlínský kraj",
    },
    "DE": {
        "Bavaria": "Bayern", "Free State of Thuringia": "Thüringen",
        "Free and Hanseatic City of Hamburg": "Hamburg", "Hesse": "Hessen",
        "Lower Saxony": "Niedersachsen", "North Rhine-Westphalia": "Nordrhein-Westfalen",
        "Rhineland-Palatinate": "Rheinland-Pfalz", "Saxony": "Sachsen",
        "Saxony-Anhalt": "Sachsen-Anhalt",
    },
    "ES": {
        "Andalusia": "Andalucía", "Aragon": "Aragón", "Balearic Islands": "Illes Balears",
        "Basque Country": "Euskadi", "Canary Islands": "Canarias",
        "Castille and León": "Castilla y León", "Castille-La Mancha": "Castilla-La Mancha",
        "Catalonia": "Catalunya", "Navarre": "Navarra", "Principality of Asturias": "Asturias",
        "Valencia": "Comunitat Valenciana",
    },
    "FR": {
        "Brittany Region": "Bretagne", "Corsica": "Corse", "Normandy": "Normandie",
        "Pays de la Loire Region": "Pays de la Loire",
        "Provence-Alpes-Côte d'Azur Region": "Provence-Alpes-Côte d'Azur",
        "Île-de-France Region": "Île-de-France",
    },
    "HU": {
        "Bekes County": "Békés", "Borsod-Abauj Zemplen county": "Borsod-Abaúj-Zemplén",
        "Bács-Kiskun county": "Bács-Kiskun", "Hajdú-Bihar County": "Hajdú-Bihar",
        "Jász-Nagykun-Szolnok County": "Jász-Nagykun-Szolnok",
    },
    "IT": {
        "Aosta Valley": "Valle d'Aosta", "Apulia": "Puglia", "Basilicate": "Basilicata",
        "Lombardy": "Lombardia", "Piedmont": "Piemonte", "Sardinia": "Sardegna",
        "Sicily": "Sicilia", "The Marches": "Marche", "Tuscany": "Toscana",
    },
    "NL": {
        "North Brabant": "Noord-Brabant", "North Holland": "Noord-Holland",
        "Province of Groningen": "Groningen", "South Holland": "Zuid-Holland",
    },
    "PL": {
        "Greater Poland Voivodeship": "Wielkopolskie",
        "Kujawsko-Pomorskie Voivodship": "Kujawsko-Pomorskie",
        "Lesser Poland Voivodeship": "Małopolskie",
        "Lower Silesian Voivodeship": "Dolnośląskie", "Lublin Voivodeship": "Lubelskie",
        "Lubusz Voivodship": "Lubuskie", "Masovian Voivodeship": "Mazowieckie",
        "Opole Voivodeship": "Opolskie", "Podlasie Voivodship": "Podlaskie",
        "Pomeranian Voivodeship": "Pomorskie", "Silesian Voivodeship": "Śląskie",
        "Subcarpathian Voivodeship": "Podkarpackie",
        "Warmian-Masurian Voivodeship": "Warmińsko-Mazurskie",
        "West Pomeranian Voivodeship": "Zachodniopomorskie", "Łódź Voivodeship": "Łódzkie",
        "Świętokrzyskie Voivodship": "Świętokrzyskie",
    },
    "US": {"State of Maine": "Maine", "State of Wyoming": "Wyoming"},
}

# The language of the towns where it is the state that decides.
STATE_LANGUAGES = {
    ("BE", "Bruxelles"): "fr", ("BE", "Vlaanderen"): "nl", ("BE", "Wallonie"): "fr",
    ("CH", "Bern"): "de", ("CH", "Genève"): "fr", ("CH", "Luzern"): "de",
    ("CH", "Zürich"): "de",
}

HEADER = """\
# Places: country code, country, state, town, latitude, longitude, population
# Source: GeoNames (https://www.geonames.org), by way of Debian's geonames {version}
# Licence: Creative Commons Attribution 4.0 International (CC BY 4.0); reduced from the original.
# Made by tools/make_places.py; SOURCE.md beside this file tells how. Edit the tool, not this file.
"""

FORBIDDEN = set('\t\n\r<>"')


class Failure(Exception):
    """What went wrong, in words for the person who runs the tool."""


def read_cities(path):
    """All records of the city table, as tuples of seven texts, population, latitude, longitude."""
    data = path.read_bytes()
    if len(data) < 8:
        raise Failure(f"{path}: too short for a city table")
    (table,) = struct.unpack_from("<I", data, len(data) - 4)
    if table >= len(data) or (len(data) - table) % 4 != 0:
        raise Failure(f"{path}: not a city table")
    start = 0
    for (end,) in struct.iter_unpack("<I", data[table:]):
        try:
            yield read_record(data[start:end])
        except (ValueError, struct.error) as error:
            raise Failure(f"{path}: bad record at byte {start}: {error}") from error
        start = (end + 7) & ~7


def read_record(record):
    texts = []
    at = 0
    for _ in range(7):
        end = record.index(0, at)
        texts.append(record[at:end].decode("utf-8"))
        at = end + 1
    at = (at + 3) & ~3
    (population,) = struct.unpack_from("<I", record, at)
    at = (at + 4 + 7) & ~7
    latitude, longitude = struct.unpack_from("<dd", record, at)
    return (*texts, population, latitude, longitude)


def read_catalogues(folder):
    """The translation catalogues by language; each maps a GeoNames number to a name."""
    languages = {lang for lang in COUNTRIES.values() if lang} | set(STATE_LANGUAGES.values())
    catalogues = {}
    for language in sorted(languages):
        path = folder / language / "LC_MESSAGES" / "geonames.mo"
        with path.open("rb") as file:
            catalogues[language] = gettext.GNUTranslations(file)
    return catalogues


def plain(name):
    """The name without letter case and accents, to find towns that would be spelled alike."""
    table = str.maketrans("łøđß", "lods")
    letters = unicodedata.normalize("NFD", name.lower().translate(table))
    return "".join(letter for letter in letters if not unicodedata.combining(letter))


def make_rows(cities, catalogues, per_country):
    """The rows of the file: the largest towns of each country, one for each state and name."""
    unused = {(code, state) for code, states in STATES.items() for state in states}
    by_country = {code: [] for code in COUNTRIES}
    for number, name, _, state, code, country, _, population, latitude, longitude in cities:
        if code not in COUNTRIES or population == 0 or not state:
            continue
        unused.discard((code, state))
        state = STATES.get(code, {}).get(state, state)
        language = STATE_LANGUAGES.get((code, state), COUNTRIES[code])
        if language:
            translated = catalogues[language].gettext(number)
            name = name if translated == number else translated
        if FORBIDDEN & set(name + state + country):
            raise Failure(f"{name!r} in {state!r}: a character that the file can not hold")
        by_country[code].append((population, code, country, state, name, latitude, longitude))
    if unused:
        raise Failure(f"no such states: {sorted(unused)}")
    rows = []
    for code, places in by_country.items():
        if not places:
            raise Failure(f"no places in {code}")
        seen = set()
        for population, _, country, state, name, latitude, longitude in sorted(
            places, key=lambda place: (-place[0], place[3], place[4])
        ):
            key = (plain(state), plain(name))
            if key in seen or len(seen) == per_country:
                continue
            seen.add(key)
            rows.append((code, country, state, name, f"{latitude:.5f}", f"{longitude:.5f}",
                         str(population)))
    return sorted(rows)


def main():
    parser = argparse.ArgumentParser(
        description="Makes bench/world/places.tsv out of GeoNames data.",
        epilog="bench/world/SOURCE.md tells where the input comes from.",
    )
    parser.add_argument("cities", type=pathlib.Path, help="the city table, cities.compiled")
    parser.add_argument("locale", type=pathlib.Path,
                        help="the folder of the catalogues, usr/share/locale")
    parser.add_argument("output", type=pathlib.Path, help="the file to write")
    parser.add_argument("--per-country", type=int, default=500, metavar="N",
                        help="largest towns to keep of each country (default: %(default)s)")
    parser.add_argument("--version", default="0.3.0-1",
                        help="version of Debian's package, for the header (default: %(default)s)")
    arguments = parser.parse_args()
    if arguments.per_country < 1:
        parser.error("--per-country must be at least 1")
    try:
        rows = make_rows(read_cities(arguments.cities), read_catalogues(arguments.locale),
                         arguments.per_country)
        text = HEADER.format(version=arguments.version)
        text += "".join("\t".join(row) + "\n" for row in rows)
        arguments.output.write_text(text, encoding="utf-8", newline="\n")
    except (Failure, OSError) as error:
        print(f"make_places.py: {error}", file=sys.stderr)
        return 1
    print(f"{arguments.output}: {len(rows)} places, {len(text.encode())} bytes")
    return 0


if __name__ == "__main__":
    sys.exit(main())
