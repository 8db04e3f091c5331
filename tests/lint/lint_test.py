#!/usr/bin/env python3
"""Proves that each rule of lint.py fails on a bad sample and passes a good one."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

import cpp_source
import lint
import rules


class Sample(unittest.TestCase):
    """A small tree that a test fills."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)

    def write(self, path, text):
        target = self.root / path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_bytes(text.encode())

    def findings(self, rule):
        return list(rules.RULES[rule](lint.Tree(self.root)))

    def finds(self, rule, path, text, *expected):
        """The rule finds exactly the expected places, "path:line", in this one file."""
        self.write(path, text)
        found = [":".join(finding.split(":")[:2]) for finding in self.findings(rule)]
        self.assertEqual(found, list(expected), text)

    def passes(self, rule, path, text):
        self.finds(rule, path, text)


class IncludeArrows(Sample):
    def test_a_room_includes_itself_and_what_lies_below(self):
        self.passes("include-arrows", "src/tools/A.cpp",
                    '#include "tools/A.h"\n#include <map>\n#include "core/Data.h"\n#include "drums/D.h"\n')

    def test_an_arrow_that_points_up_is_found(self):
        self.finds("include-arrows", "src/core/A.cpp", '#include <map>\n#include "tools/A.h"\n',
                   "src/core/A.cpp:2")

    def test_neighbours_do_not_know_each_other(self):
        self.finds("include-arrows", "src/drums/A.h", '#include "effects/E.h"\n', "src/drums/A.h:1")

    def test_angle_brackets_and_spaces_do_not_hide_an_include(self):
        self.finds("include-arrows", "src/core/A.h", "/* x\n*/\n #  include <instruments/I.h>\n",
                   "src/core/A.h:3")

    def test_a_commented_include_does_not_count(self):
        self.passes("include-arrows", "src/core/A.h",
                    '// #include "tools/T.h"\n/*\n#include "tools/T.h"\n*/\n')

    def test_a_path_that_is_not_written_from_src_is_found(self):
        self.finds("include-arrows", "src/core/A.cpp", '#include "Data.h"\n', "src/core/A.cpp:1")
        self.finds("include-arrows", "src/core/A.cpp", '#include "../tools/T.h"\n', "src/core/A.cpp:1")

    def test_the_programs_are_included_by_nobody(self):
        self.finds("include-arrows", "src/desk/A.cpp", '#include "cli/Show.h"\n', "src/desk/A.cpp:1")
        self.finds("include-arrows", "src/desk/A.cpp", '#include "desk/A.h"\n')
        self.finds("include-arrows", "cli/A.cpp", '#include "app/Main.h"\n', "cli/A.cpp:1")

    def test_only_the_benchmark_of_the_windows_knows_windows(self):
        self.passes("include-arrows", "bench/windows/A.cpp", '#include "app/Main.h"\n')
        self.finds("include-arrows", "bench/A.cpp", '#include "app/Main.h"\n', "bench/A.cpp:1")

    def test_the_programs_know_every_room(self):
        self.passes("include-arrows", "cli/main.cpp",
                    '#include "cli/Show.h"\n#include "core/Song.h"\n#include "desk/Desk.h"\n')

    def test_a_room_that_nobody_planned_is_found(self):
        self.finds("include-arrows", "src/misc/A.cpp", "\n", "src/misc/A.cpp:1")


class Libraries(Sample):
    def test_qt_stays_in_the_app(self):
        for header in ("QString", "QtWidgets/QLabel", "qglobal.h"):
            self.finds("libraries", "src/core/A.cpp", f"#include <{header}>\n", "src/core/A.cpp:1")
        self.finds("libraries", "src/core/A.cpp", "#include <queue>\n")
        self.finds("libraries", "cli/A.cpp", "#include <QString>\n", "cli/A.cpp:1")

    def test_the_app_may_use_qt(self):
        self.passes("libraries", "app/desk/Main.cpp", "#include <QString>\n")

    def test_platform_headers_stay_in_the_drivers(self):
        for header in ("RtMidi.h", "rtmidi/RtMidi.h", "RtAudio.h", "fluidsynth.h", "taglib/tag.h",
                       "juce_core/juce_core.h", "alsa/asoundlib.h"):
            self.finds("libraries", "src/playback/MidiOut.cpp", f"#include <{header}>\n",
                       "src/playback/MidiOut.cpp:1")

    def test_the_drivers_may_use_them(self):
        self.passes("libraries", "src/playback/drivers/rtmidi/Port.cpp", "#include <RtMidi.h>\n")

    def test_the_command_lines_libraries_stay_there(self):
        for header in ("fmt/format.h", "nlohmann/json.hpp", "CLI/CLI.hpp"):
            self.finds("libraries", "src/tools/A.h", f"#include <{header}>\n", "src/tools/A.h:1")

    def test_the_rooms_do_not_print(self):
        self.finds("libraries", "src/core/A.cpp", "#include <iostream>\n", "src/core/A.cpp:1")


class Sizes(Sample):
    def test_the_last_allowed_line_passes_and_the_next_does_not(self):
        for path, limit in (("src/core/A.cpp", 500), ("src/core/A.h", 250), ("tests/core/T.cpp", 800)):
            self.finds("file-sizes", path, "\n" * limit)
            self.finds("file-sizes", path, "\n" * (limit + 1), path + ":1")
            (self.root / path).unlink()

    def test_a_function_of_sixty_lines_passes_and_one_more_does_not(self):
        def function(lines):
            return "int x;\n\nvoid F() {\n" + "  G();\n" * (lines - 2) + "}\n"
        self.passes("function-sizes", "src/core/A.cpp", function(60))
        self.finds("function-sizes", "src/core/A.cpp", function(61), "src/core/A.cpp:3")

    def test_the_declaration_counts(self):
        self.finds("function-sizes", "src/core/A.cpp",
                   "template <class T>\nvoid F(int a,\n       int b) {\n" + ";\n" * 57 + "}\n",
                   "src/core/A.cpp:1")


class Functions(unittest.TestCase):
    def found(self, text):
        return [(f.name, f.line, f.lines) for f in cpp_source.functions(text)]

    def test_braces_in_comments_and_literals_do_not_count(self):
        self.assertEqual(self.found(
            'void F() {\n  // }\n  /* }\n } */\n  G("}", \'}\', R"x(\n}\n)" })x");\n  H("\\"}");\n}\n'
            "void G() {}\n"), [("F", 1, 9), ("G", 10, 1)])

    def test_an_apostrophe_in_a_number_opens_no_literal(self):
        self.assertEqual(self.found("int F() {\n  return 1'000'000 + 0xFF'FF;\n}\nint G() {}\n"),
                         [("F", 1, 3), ("G", 4, 1)])

    def test_preprocessor_lines_do_not_count(self):
        self.assertEqual(self.found("#define X { \\\n  {\nvoid F() {\n}\n"), [("F", 3, 2)])

    def test_scopes_are_no_functions(self):
        self.assertEqual(self.found(
            "namespace A {\nnamespace {\nclass B : public C<int> {\n public:\n  int F() const {\n  }\n"
            "  enum class E : int { X, Y };\n};\n}\nextern \"C\" {\nint G() noexcept {\n}\n}\n}\n"),
            [("F", 5, 2), ("G", 11, 2)])

    def test_tables_are_no_functions(self):
        self.assertEqual(self.found(
            "constexpr Row Rows[] = {\n" + "  {1, F(2), {3}},\n" * 80 + "};\n"
            "std::array<int, 2> a{1, 2};\nint b = F(1) + int{2};\nvoid G(int c = {}) {\n}\n"),
            [("G", 85, 2)])

    def test_member_initialisers_belong_to_their_constructor(self):
        self.assertEqual(self.found("A::A(int x)\n    : b{x},\n      c(x), d{{1}} {\n  F();\n}\nint y;\n"),
                         [("A::A", 1, 5)])
        self.assertEqual(self.found("A() noexcept : b{1} {}\n~A() {}\n"), [("A", 1, 1), ("~A", 2, 1)])

    def test_templates_operators_and_trailing_types(self):
        self.assertEqual(self.found(
            "template <class T, class = std::enable_if_t<(sizeof(T) > 1)>>\n"
            "auto F(T x) -> std::vector<T> {\n}\n"
            "bool operator==(const A& a) const {\n}\n"
            "A& operator=(A&& a) noexcept {\n}\n"
            "[[nodiscard]] struct T F2() {\n}\n"),
            [("F", 1, 3), ("operator==", 4, 2), ("operator=", 6, 2), ("F2", 8, 2)])

    def test_a_lambda_at_file_level_is_a_function(self):
        text = "const auto f = [](int x) {\n  return x;\n};\nTable t = {{1, [] {\n}}, {2, nullptr}};\nvoid G() {\n}\n"
        self.assertEqual([(line, lines) for _, line, lines in self.found(text)], [(1, 3), (4, 2), (6, 2)])

    def test_a_lambda_inside_a_function_counts_with_it(self):
        self.assertEqual(self.found("void F() {\n  G([] {\n  });\n  struct L { int H() { return 1; } };\n}\n"),
                         [("F", 1, 5)])

    def test_a_test_is_a_function(self):
        self.assertEqual(self.found("TEST(A, B) {\n}\n"), [("TEST", 1, 2)])


class Text(Sample):
    def test_a_header_begins_with_a_comment_and_is_read_once(self):
        self.passes("headers", "src/core/A.h", "// Sonarello: A.\n#pragma once\n")
        self.finds("headers", "src/core/A.h", "#pragma once\n", "src/core/A.h:1")
        self.finds("headers", "src/core/A.h", "// Sonarello: A.\n//#pragma once\n", "src/core/A.h:1")

    def test_whitespace(self):
        self.passes("whitespace", "README.md", "a\n\nb\n")
        for text, line in (("a\n\tb\n", 2), ("a \n", 1), ("a\r\nb\n", 1), ("a", 1)):
            self.finds("whitespace", "README.md", text, f"README.md:{line}")

    def test_bytes_that_are_kept_as_they_came_may_end_anyhow(self):
        for path in ("fuzz/corpus/fuzz_marker/00", "tests/data/a.txt", "LICENSE"):
            self.passes("whitespace", path, "a \t")

    def test_words(self):
        self.passes("words", "README.md", "A part of the song. Part 9. Spec sheets. An issue tracker.\n")
        for text in ("see spe" + "c.md", "as the speci" + "fication says", "as the spe" + "c says",
                     "Part" + " 1.2", "Parts" + " 8.1", "DEVELOPERS" + ".md", "issue" + " #2", "issue" + " 12",
                     ".." + "/shared/x"):
            self.finds("words", "README.md", f"\n{text}\n", "README.md:2")

    def test_names_of_files(self):
        self.finds("words", "docs/spe" + "c.md", "x\n", "docs/spe" + "c.md:1")

    def test_stubs(self):
        self.passes("stubs", "src/core/A.cpp", "KorgPaX" + "XXPartEQ = EXPECT_TRUE(x);\n")
        for text in ("// TO" + "DO", "FIX" + "ME", "// X" + "XX", "GTEST" + "_SKIP()", "EXPECT_TRUE" + "(true);",
                     "TEST(A, DISABLED" + "_B)"):
            self.finds("stubs", "src/core/A.cpp", f"\n{text}\n", "src/core/A.cpp:2")
        self.finds("stubs", "src/core/A.cpp", "\n")
        self.finds("stubs", "cmake/A.cmake", "# TO" + "DO\n", "cmake/A.cmake:1")
        self.finds("stubs", "cmake/A.cmake", "\n")
        self.finds("stubs", "run", "# FIX" + "ME\n", "run:1")

    def test_formatting(self):
        self.write(".clang-format", "BasedOnStyle: Google\n")
        self.passes("formatting", "src/core/A.cpp", "int F() { return 1; }\n")
        self.finds("formatting", "src/core/A.cpp", "\nint  F( ) {return 1;}\n", "src/core/A.cpp:2")


class TheProgram(Sample):
    def run_lint(self, *arguments):
        return subprocess.run([sys.executable, "-B", lint.__file__, "--root", str(self.root), *arguments],
                              capture_output=True, text=True, check=False)

    def test_a_finding_fails_the_run_and_is_told(self):
        self.write("src/core/A.cpp", '#include "tools/T.h"\n')
        done = self.run_lint("include-arrows")
        self.assertEqual(done.returncode, 1)
        self.assertIn("src/core/A.cpp:1: core must not include tools/T.h", done.stdout)

    def test_a_clean_tree_passes(self):
        self.write("src/core/A.cpp", "int a;\n")
        done = self.run_lint("include-arrows", "stubs")
        self.assertEqual((done.returncode, done.stdout), (0, ""))

    def test_an_empty_tree_or_an_unknown_rule_fails(self):
        self.assertEqual(self.run_lint("stubs").returncode, 1)
        self.write("src/core/A.cpp", "int a;\n")
        self.assertEqual(self.run_lint("no-such-rule").returncode, 2)

    def test_a_new_file_counts_and_an_ignored_one_does_not(self):
        subprocess.run(["git", "init", "-q", self.root], check=True)
        self.write(".gitignore", "/build/\n")
        self.write("build/A.cpp", "// TO" + "DO\n")
        self.write("src/core/B.cpp", "int b;\n")
        self.assertEqual(self.run_lint("stubs").returncode, 0)
        self.write("src/core/C.cpp", "// TO" + "DO\n")
        self.assertEqual(self.run_lint("stubs").returncode, 1)

    def test_every_rule_has_a_sample_above(self):
        text = pathlib.Path(__file__).read_text()
        for rule in rules.RULES:
            self.assertTrue(f'self.finds("{rule}"' in text, rule)


if __name__ == "__main__":
    unittest.main(verbosity=0)
