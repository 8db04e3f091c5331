"""The rules of the tree. Each is a function that takes the tree and yields its findings as text."""
import re
import shutil
import subprocess

from cpp_source import functions

CODE = (".cpp", ".h")
TEXT = CODE + (".py", ".cmake", ".md", ".json", ".txt", ".sh", ".tsv", ".yml", "")

# Which rooms of src/ a room may include. app/ and cli/ are composition roots and know every room.
ARROWS = {"core": set()}
ARROWS["instruments"] = {"core"}
ARROWS["drums"] = ARROWS["effects"] = ARROWS["playback"] = {"core", "instruments"}
ARROWS["editors"] = ARROWS["tools"] = {"core", "instruments", "drums", "effects", "playback"}
ARROWS["desk"] = set(ARROWS)

# Libraries that belong to one place: what their headers are called, and where they may be included.
LIBRARIES = (
    ("Qt", re.compile(r"Q[A-Z]\w*$|Qt\w*/|q[a-z0-9]+\.h$"), ("app/", "tests/app/", "bench/windows/")),
    ("a MIDI, audio or tag library",
     re.compile(r"(?i)(rtmidi|rtaudio|fluidsynth|juce|taglib)|(alsa|jack)/"),
     ("src/playback/drivers/", "tests/playback/drivers/", "bench/")),
    ("a library of the command line", re.compile(r"CLI/|nlohmann/|fmt/"), ("cli/", "tests/cli/")),
    ("a test library", re.compile(r"gtest/|gmock/"), ("tests/",)),
    ("a library of the benchmarks", re.compile(r"benchmark/|(smf/)?smf\.h$"), ("bench/",)),
    ("the console", re.compile(r"iostream$"), ("app/", "cli/", "tests/", "bench/", "fuzz/")),
)

CPP_LINES, HEADER_LINES, TEST_LINES, FUNCTION_LINES = 500, 250, 800, 60

# Bytes that are kept as they came.
VERBATIM = ("data/", "fuzz/corpus/", "fuzz/regressions/", "tests/data/", "LICENSE")

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"\n]+)[>"]', re.M)

# Bracketed letters keep these patterns from finding themselves.
FORBIDDEN = re.compile(
    r"[s]pec\.md|\b[t]he specification\b|\b[t]he spec\b|\b[p]er spec\b|\b[P]arts? [1-8]\.[1-9]\b"
    r"|[D]EVELOPERS\.md|\b[i]ssue #?[0-9]+\b|\.\./[s]hared")
FORBIDDEN_NAME = re.compile(r"(?i)(^|/)([s]pec|[p]art[-_]?[1-8][._-][1-9])")
STUBS = re.compile(
    r"[T]ODO|[F]IXME|\b[X]XX\b|[H]ACK|[n]ot implemented|[G]TEST_SKIP|[Q]SKIP|\b[D]ISABLED_\w"
    r"|(EXPECT|ASSERT)_[T]RUE\(true\)|(EXPECT|ASSERT)_[F]ALSE\(false\)")


def line_of(text, index):
    return text.count("\n", 0, index) + 1


def includes(text):
    """(line, path) of each include; commented ones do not count, so the comments' lines are emptied."""
    kept = re.sub(r"/\*.*?\*/", lambda m: "\n" * m.group().count("\n"), text, flags=re.S)
    return [(line_of(kept, m.start()), m.group(1), m.group(2)) for m in INCLUDE.finditer(kept)]


def include_arrows(tree):
    """A room includes rooms on lower lines only, under the path from src/."""
    for path in tree.files(*CODE):
        parts = path.split("/")
        room = parts[1] if parts[0] == "src" and len(parts) > 2 else None
        if room is not None and room not in ARROWS:
            yield f"{path}:1: the room {room} has no place in the house"
            continue
        for line, quote, included in includes(tree.text(path)):
            target = included.split("/")[0]
            if ".." in included.split("/"):
                yield f"{path}:{line}: {included} climbs out of its folder; write the path from src/"
            elif target == "app" and path.startswith("bench/windows/"):
                continue
            elif target in ("app", "cli") and parts[0] not in (target, "tests"):
                yield f"{path}:{line}: {included} belongs to a program; only its own files include it"
            elif room is not None and target in ARROWS and "/" in included:
                if target != room and target not in ARROWS[room]:
                    yield f"{path}:{line}: {room} must not include {included}"
            elif room is not None and quote == '"':
                yield f"{path}:{line}: {included} is in no room; write the path from src/"


def libraries(tree):
    """A library is included only where it belongs: Qt in app/, platform headers in the drivers."""
    for path in tree.files(*CODE):
        for line, _, included in includes(tree.text(path)):
            for name, pattern, places in LIBRARIES:
                if pattern.match(included) and not path.startswith(places):
                    yield f"{path}:{line}: {included} is {name}; it belongs into {' '.join(places)}"


def file_sizes(tree):
    """A file can be read in one sitting."""
    for path in tree.files(*CODE):
        limit = TEST_LINES if path.startswith("tests/") else \
            HEADER_LINES if path.endswith(".h") else CPP_LINES
        lines = tree.text(path).count("\n")
        if lines > limit:
            yield f"{path}:1: {lines} lines, the limit is {limit}"


def function_sizes(tree):
    """A function fits on one screen, its declaration included."""
    for path in tree.files(*CODE):
        for f in functions(tree.text(path)):
            if f.lines > FUNCTION_LINES:
                yield f"{path}:{f.line}: {f.name} has {f.lines} lines, the limit is {FUNCTION_LINES}"


def headers(tree):
    """A header begins with a comment that says what it holds and is read once."""
    for path in tree.files(".h"):
        text = tree.text(path)
        if not re.match(r"// \S", text):
            yield f"{path}:1: the first line is no comment that says what the header holds"
        if not re.search(r"^#pragma once$", text, re.M):
            yield f"{path}:1: no #pragma once"


def whitespace(tree):
    """No tabs, no spaces at a line's end, Unix line ends, a line end at the file's end."""
    for path in tree.files(*TEXT):
        if path.startswith(VERBATIM):
            continue
        text = tree.text(path)
        for number, line in enumerate(text.split("\n"), 1):
            if "\t" in line and not path.endswith(".tsv"):
                yield f"{path}:{number}: a tab"
            if line != line.rstrip():
                yield f"{path}:{number}: space at the line's end"
        if text and (not text.endswith("\n") or text.endswith("\n\n")):
            yield f"{path}:{line_of(text, len(text))}: the file does not end with one line end"


def words(tree):
    """The tree speaks for itself: no word of papers that a reader of it does not have."""
    for path in tree.files():
        if FORBIDDEN_NAME.search(path):
            yield f"{path}:1: a file must not have this name"
        for match in FORBIDDEN.finditer(tree.text(path)):
            yield f"{path}:{line_of(tree.text(path), match.start())}: {match.group()}"


def stubs(tree):
    """Nothing is put off, no test is skipped or cannot fail."""
    for path in tree.files(*CODE, ".py", ".cmake", ".sh", "CMakeLists.txt", ""):
        for match in STUBS.finditer(tree.text(path)):
            yield f"{path}:{line_of(tree.text(path), match.start())}: {match.group()}"


def clang_format_program():
    for name in ("clang-format-14", "clang-format"):
        program = shutil.which(name)
        if program and " 14." in subprocess.run([program, "--version"], capture_output=True,
                                                text=True, check=True).stdout:
            return program
    return None


def formatting(tree):
    """C++ is formatted by clang-format 14 as .clang-format says."""
    program = clang_format_program()
    if program is None:
        yield "clang-format 14 is missing: packaging/setup installs it"
        return
    paths = [str(tree.root / path) for path in tree.files(*CODE)]
    if not paths:
        return
    done = subprocess.run([program, "--dry-run", "--Werror", "--ferror-limit=1", *paths],
                          capture_output=True, text=True, check=False)
    found = re.findall(r"^(.+?):(\d+):\d+: error:", done.stderr, re.M)
    for path, line in found:
        yield f"{path.removeprefix(str(tree.root) + '/')}:{line}: clang-format -i would change it"
    if done.returncode != 0 and not found:
        yield done.stderr.strip()


RULES = {
    "include-arrows": include_arrows,
    "libraries": libraries,
    "file-sizes": file_sizes,
    "function-sizes": function_sizes,
    "headers": headers,
    "whitespace": whitespace,
    "words": words,
    "stubs": stubs,
    "formatting": formatting,
}
