"""Puts small faults into the code, each behind a switch, and sees which of them the tests catch.

Usage: mutants.py write TREE COMPILE_COMMANDS COUNT SEED   into the sources of TREE
       mutants.py run TREE BUILD [NUMBER...]               once these are built; all, or some

The compiler's own parser finds the places for faults, so that `a < b` in a comment is none. All
faults of a run are in one build; `mutant(n)` is true in a process while fault n is switched on.
A first run finds out which tests reach which place, and only these run for its fault.
"""

import collections
import json
import os
import pathlib
import random
import shlex
import signal
import subprocess
import sys
import time

from clang.cindex import CursorKind as Kind, Index, TranslationUnit

ROOMS = ("Core/Sessions", "Core/Adapters", "Core/Hooks", "Core/Intake",
         "Presentation/Notch", "Presentation/Overlay")
PROGRAMS = ("Core/core_tests", "Core/server_tests", "Presentation/presentation_tests",
            "App/app_tests", "EndToEnd/writer_fault_tests", "EndToEnd/headless_tests")

SWAPPED = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">",
           "&&": "||", "||": "&&", "+": "-", "-": "+", "*": "/", "/": "*"}
LOGICAL = ("==", "!=", "<", "<=", ">", ">=", "&&", "||")
SIMPLE_STATEMENTS = (Kind.CALL_EXPR, Kind.BINARY_OPERATOR, Kind.UNARY_OPERATOR,
                     Kind.COMPOUND_ASSIGNMENT_OPERATOR, Kind.CONTINUE_STMT, Kind.UNEXPOSED_EXPR)

HEADER = """#pragma once

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <unistd.h>

/// The number of the fault that is switched on; negative while the reached places are recorded.
/// Read from a file, since tests pass only parts of their environment on to programs they start.
inline const int mutantChosen = [] {
    std::array<char, 16> text{};
    const int file = ::open(MUTANTS "/chosen", O_RDONLY | O_CLOEXEC);
    const bool isRead = file >= 0 && ::read(file, text.data(), text.size() - 1) > 0;
    ::close(file);
    return isRead ? std::atoi(text.data()) : 0;
}();
/// Opened at the start, since some tests leave no descriptor free.
inline const int mutantsReached =
    mutantChosen < 0 ? ::open(MUTANTS "/reached", O_WRONLY | O_APPEND | O_CLOEXEC) : -1;

inline bool mutant(int number) {
    static std::array<std::atomic<bool>, COUNT + 1> isTold;
    if (mutantsReached >= 0 && !isTold.at(static_cast<std::size_t>(number)).exchange(true)) {
        const std::string line = std::to_string(number) + '\\n';
        [[maybe_unused]] const auto written = ::write(mutantsReached, line.data(), line.size());
    }
    return mutantChosen == number;
}
"""

Place = collections.namedtuple("Place", "file start end what text")


class Reader:
    """Collects the places of one file."""

    def __init__(self, path, arguments):
        self.path = path
        self.text = path.read_bytes()
        self.arguments = arguments
        self.places = []
        self.unit = Index.create().parse(
            str(path), arguments, options=TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD)
        self.macros = []
        for cursor in self.unit.cursor.get_children():
            if self.is_here(cursor):
                if cursor.kind == Kind.MACRO_INSTANTIATION:
                    self.macros.append(self.range(cursor))
        for cursor in self.unit.cursor.get_children():
            if self.is_here(cursor) and cursor.kind.is_declaration():
                self.visit(cursor)

    def is_here(self, cursor):
        file = cursor.extent.start.file
        return file is not None and file.name == str(self.path)

    def range(self, cursor):
        return cursor.extent.start.offset, cursor.extent.end.offset

    def of(self, start, end):
        return self.text[start:end].decode()

    def add(self, cursor, what, text):
        """`text` has NEW where the switch goes."""
        start, end = self.range(cursor)
        if start < end and not any(a < end and start < b for a, b in self.macros):
            self.places.append(Place(self.path, start, end, what, text))

    def operator(self, cursor):
        """The operator of an expression with two operands, and its place."""
        children = list(cursor.get_children())
        if cursor.kind == Kind.BINARY_OPERATOR and len(children) == 2:
            start, end = children[0].extent.end.offset, children[1].extent.start.offset
            gap = self.of(start, end)
            return gap.strip(), start, end
        if cursor.kind == Kind.CALL_EXPR and len(children) == 3:
            start, end = self.range(children[1])
            return self.of(start, end), start, end
        return "", 0, 0

    def visit(self, cursor):
        kind = cursor.kind
        start, end = self.range(cursor)
        whole = self.of(start, end)
        children = list(cursor.get_children())
        if kind in (Kind.STATIC_ASSERT, Kind.ENUM_DECL):
            return
        if kind in (Kind.VAR_DECL, Kind.FUNCTION_DECL, Kind.CXX_METHOD) and \
                "constexpr" in self.of(start, cursor.location.offset):
            return
        if kind == Kind.CASE_STMT:
            children = children[1:]

        sign, left, right = self.operator(cursor)
        if sign in SWAPPED and left >= start:
            ours, theirs = self.of(start, left), self.of(right, end)
            in_chrono = "chrono" in cursor.type.get_canonical().spelling
            if sign in LOGICAL or kind == Kind.BINARY_OPERATOR or in_chrono:
                other = SWAPPED[sign]
                self.add(cursor, f"{sign} becomes {other}",
                         f"(NEW ? (({ours}) {other} ({theirs})) : ({whole}))")
        elif kind == Kind.UNARY_OPERATOR and whole.startswith("!"):
            self.add(cursor, "! is dropped",
                     f"(NEW != !static_cast<bool>({whole[1:]}))")
        elif kind == Kind.INTEGER_LITERAL and whole.isdigit():
            self.add(cursor, f"becomes {int(whole) + 1}",
                     f"(NEW ? {int(whole) + 1} : {whole})")
        elif kind == Kind.CXX_BOOL_LITERAL_EXPR:
            self.add(cursor, "is turned", f"(NEW != {whole})")
        elif kind == Kind.CALL_EXPR and whole.startswith(("std::min(", "std::max(")):
            other = {"i": "std::max", "a": "std::min"}[whole[6]]
            self.add(cursor, f"{whole[:8]} becomes {other}",
                     f"(NEW ? {other}{whole[8:]} : {whole})")

        if kind in (Kind.IF_STMT, Kind.CONDITIONAL_OPERATOR, Kind.RETURN_STMT):
            self.condition(cursor, children)
        if kind == Kind.COMPOUND_STMT:
            for child in children:
                self.statement(child)
        for child in children:
            self.visit(child)

    def condition(self, cursor, children):
        """Adds a condition, unless it is a comparison, which has places of its own."""
        expressions = [child for child in children if child.kind.is_expression()]
        if not expressions or children[0].kind == Kind.VAR_DECL:
            return
        tested = expressions[0]
        text = self.of(*self.range(tested))
        is_return = cursor.kind == Kind.RETURN_STMT
        if is_return and tested.type.get_canonical().spelling != "bool":
            return
        if text.startswith("!") or text in ("true", "false") or \
                self.operator(self.inner(tested))[0] in SWAPPED:
            return
        self.add(tested, "is turned", f"(NEW != static_cast<bool>({text}))")

    def inner(self, cursor):
        children = list(cursor.get_children())
        while cursor.kind in (Kind.UNEXPOSED_EXPR, Kind.PAREN_EXPR) and len(children) == 1:
            cursor = children[0]
            children = list(cursor.get_children())
        return cursor

    def statement(self, cursor):
        text = self.of(*self.range(cursor))
        if cursor.kind in SIMPLE_STATEMENTS or text == "return":
            self.add(cursor, "is dropped", f"if (!NEW) {text}")

    def broken(self, places):
        """The places that don't compile with their fault."""
        text = rewritten(self.text, [(place, 1) for place in places], spread=True)
        unit = Index.create().parse(str(self.path), self.arguments + ["-DMUTANTS=\"\"", "-DCOUNT=1"],
                                    unsaved_files=[(str(self.path), text.decode())])
        bad = set()
        for diagnostic in unit.diagnostics:
            if diagnostic.severity >= 3:
                at = diagnostic.location.offset
                marks = [i for i, (a, b) in enumerate(spans(self.text, places)) if a <= at < b]
                bad.update(marks or range(len(places)))
        return [places[i] for i in sorted(bad)]


INCLUDE = b'#include "Mutant.h"\n'


def spans(text, places):
    """The span of each place once all are rewritten."""
    result = {}
    shift = len(INCLUDE)
    for place in sorted(places, key=lambda place: place.start):
        length = len(place.text.replace("NEW", "mutant(1)").encode())
        result[place] = (place.start + shift, place.start + shift + length)
        shift += length - (place.end - place.start)
    return [result[place] for place in places]


def rewritten(text, numbered, spread=False):
    for place, number in sorted(numbered, key=lambda each: -each[0].start):
        fault = place.text.replace("NEW", f"mutant({number})").encode()
        text = text[:place.start] + fault + text[place.end:]
    return INCLUDE + text


def write(tree, commands, count, seed):
    header = tree / "src/Mutant.h"
    header.write_text(HEADER)
    readers = {}
    places = []
    for command in sorted(json.loads(commands.read_text()), key=lambda each: each["file"]):
        path = pathlib.Path(command["file"])
        if not any(path.is_relative_to(tree / "src" / room) for room in ROOMS):
            continue
        words = shlex.split(command["command"])
        arguments = [word for word in words[1:words.index("-o")] if word[:2] in ("-I", "-D", "-s")]
        systems = [words[i + 1] for i, word in enumerate(words) if word == "-isystem"]
        arguments = [word for word in arguments if word != "-isystem"] + ["-std=c++20"]
        for system in systems:
            arguments += ["-isystem", system]
        readers[path] = Reader(path, arguments)
        places += readers[path].places
    random.Random(seed).shuffle(places)

    drawn = []
    refused = set()
    while len(drawn) < count:
        for place in places:
            if len(drawn) == count:
                break
            apart = all(place.file != other.file or place.end <= other.start or
                        other.end <= place.start for other in drawn)
            if apart and place not in drawn and place not in refused:
                drawn.append(place)
        bad = set()
        for path, reader in readers.items():
            here = [place for place in drawn if place.file == path]
            if here:
                bad.update(reader.broken(here))
        if not bad:
            break
        refused |= bad
        drawn = [place for place in drawn if place not in bad]

    drawn.sort(key=lambda place: (place.file, place.start))
    numbered = [(place, number) for number, place in enumerate(drawn, 1)]
    listed = []
    for path, reader in readers.items():
        here = [each for each in numbered if each[0].file == path]
        if here:
            for place, number in here:
                line = reader.text.count(b"\n", 0, place.start)
                name = f"{path.relative_to(tree)}:{line + 1}"
                code = " ".join(reader.of(place.start, place.end).split())
                around = reader.text.splitlines()[line].decode().strip()
                listed.append((number, f"{name}: `{code}` {place.what}, in: {around}"))
            path.write_bytes(rewritten(reader.text, here))
    (tree / "mutants").mkdir(exist_ok=True)
    (tree / "mutants/places.json").write_text(json.dumps(sorted(listed), indent=1))
    header.write_text(HEADER.replace("MUTANTS", f'"{tree}/mutants"')
                      .replace("COUNT", str(len(drawn))))
    print(f"{len(places)} places, {len(refused)} of the drawn could not be compiled")


def tests_of(program):
    listed = subprocess.run([program, "--gtest_list_tests"], capture_output=True, text=True)
    for line in listed.stdout.splitlines():
        name = line.split("#")[0].strip()
        if not line.startswith(" "):
            suite = name
        elif "DISABLED_" not in suite + name:
            yield suite + name


def passes(program, tests, seconds):
    """Whether these tests pass in that time; what they have started is killed with them."""
    child = subprocess.Popen([program, "--gtest_fail_fast", "--gtest_filter=" + ":".join(tests)],
                             stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                             start_new_session=True)
    try:
        return child.wait(seconds) == 0
    except subprocess.TimeoutExpired:
        return False
    finally:
        try:
            os.killpg(child.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        child.wait()


def run(tree, build, numbers):
    os.environ["QT_QPA_PLATFORM"] = "offscreen"
    chosen, reached = tree / "mutants/chosen", tree / "mutants/reached"
    places = json.loads((tree / "mutants/places.json").read_text())
    visits = collections.defaultdict(lambda: collections.defaultdict(list))
    took = {}
    chosen.write_text("-1")
    for program in PROGRAMS:
        path = str(build / "tests" / program)
        for test in tests_of(path):
            reached.write_text("")
            before = time.monotonic()
            if not passes(path, [test], 120):
                print(f"{test} fails without a fault, and is left out")
                continue
            took[test] = time.monotonic() - before
            for number in set(reached.read_text().split()):
                visits[int(number)][path].append(test)

    if numbers:
        places = [place for place in places if place[0] in numbers]
    survivors = []
    for number, what in places:
        chosen.write_text(str(number))
        caught = any(not passes(path, sorted(tests, key=took.get),
                                10 + 5 * sum(took[test] for test in tests))
                     for path, tests in visits[number].items())
        if not caught:
            survivors.append(what + ("" if visits[number] else " (no test comes by)"))
        print(f"{number} {'caught' if caught else 'SURVIVED'} {what}", flush=True)
    chosen.write_text("0")
    print(f"\n{len(places) - len(survivors)} of {len(places)} caught")
    print(*survivors, sep="\n")


if __name__ == "__main__":
    if sys.argv[1] == "write":
        write(pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3]),
              int(sys.argv[4]), int(sys.argv[5]))
    else:
        run(pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3]), [int(n) for n in sys.argv[4:]])
