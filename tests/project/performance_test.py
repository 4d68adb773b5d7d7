#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Tries scripts/performance.py with made-up figures: reading, comparing, tables and curves; and scripts/measure in
a tree of its own, with programs that print what a test wants."""
import dataclasses, pathlib, re, shutil, subprocess, sys, tempfile, unittest
import xml.etree.ElementTree

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "scripts"))
import performance

LOAD = "figure\tpages\tLoad\tms\t6\tone read\t2\t3\tratio\t8\tlower"
RATE = "figure\trender\tPictures\ta second\t100\tempty ones\t400\t0.25\town\t400\thigher"
FIRST = "figure\tstart\tFirst picture\tms\t82\tan empty window\t33\t2.48485\tdifference\t30\tlower"
ALONE = "figure\tupdate\tHeld\tms\t12.5\t\t0\t0\tnothing\t0\tlower"
MEMORY = "figure\tserve\tMemory\tMiB\t100\t\t0\t0\town\t150\tlower"
POINT = "point\tstart\tStart by marks\tmarks\t1000\tms\t90\tnone\t80"
RUN = "run\tstart\t1 May 2026, version 5\ta machine"


def figures_of(*lines):
    return performance.read(lines)[0]


def worse_by(line, factor):
    figure, = figures_of(line)
    return dataclasses.replace(figure, ratio=figure.ratio * factor)


class Reading(unittest.TestCase):
    def test_lines_come_back_as_they_were(self):
        lines = [LOAD, RATE, FIRST, ALONE, POINT, RUN]
        self.assertEqual(performance.lines_of(*performance.read(lines)).splitlines(), lines)

    def test_empty_lines_are_passed_over(self):
        self.assertEqual(performance.read(["", LOAD + "\n"])[0], figures_of(LOAD))

    def test_a_line_that_lacks_a_word_is_an_error(self):
        with self.assertRaisesRegex(ValueError, "not a line of figures"):
            performance.read(["figure\tpages\tLoad"])


class Comparing(unittest.TestCase):
    def compared(self, line, factor):
        return [new.what for _, new in performance.compare(figures_of(line), [worse_by(line, factor)])[0]]

    def test_a_ratio_that_grew_by_over_a_fifth_is_worse(self):
        self.assertEqual(self.compared(LOAD, 1.21), ["Load"])

    def test_one_that_grew_by_less_is_not(self):
        self.assertEqual(self.compared(LOAD, 1.19), [])
        self.assertEqual(self.compared(LOAD, 0.5), [])

    def test_where_more_is_better_less_is_worse(self):
        self.assertEqual(self.compared(RATE, 1 / 1.21), ["Pictures"])
        self.assertEqual(self.compared(RATE, 2), [])

    def test_the_machine_does_not_matter(self):
        figure, = figures_of(LOAD)
        slower = dataclasses.replace(figure, own=60, peer=20)
        self.assertEqual(performance.compare([figure], [slower])[0], [])

    def worse(self, line, **changes):
        figure, = figures_of(line)
        return bool(performance.compare([figure], [dataclasses.replace(figure, **changes)])[0])

    def test_a_time_that_has_no_peer_is_not_compared(self):
        self.assertFalse(self.worse(ALONE, own=1000))
        self.assertFalse(self.worse(ALONE, own=0))

    def test_memory_and_counts_that_have_no_peer_are_compared_themselves(self):
        for line in (MEMORY, MEMORY.replace("MiB", "")):
            self.assertTrue(self.worse(line, own=121))
            self.assertFalse(self.worse(line, own=119))
            self.assertFalse(self.worse(line, own=0))

    def test_what_has_become_nothing_is_worse_where_more_is_better(self):
        self.assertTrue(self.worse(RATE, own=0, ratio=0))
        self.assertFalse(self.worse(RATE.replace("\t100\t", "\t0\t").replace("0.25", "0")))
        self.assertFalse(self.worse(LOAD, own=0, ratio=0))

    def test_what_was_nothing_is_worse_where_less_is_better(self):
        nothing = LOAD.replace("\t6\t", "\t0\t").replace("\t3\t", "\t0\t")
        self.assertTrue(self.worse(nothing, own=6, ratio=3))

    def test_a_peer_of_nothing_is_not_compared_with(self):
        self.assertFalse(self.worse(RATE, peer=0, ratio=0))

    def test_next_to_nothing_of_a_core_is_not_compared(self):
        idle, = figures_of("figure\tfolder\tIdle\t%\t0.002\tfewer\t0.001\t2\tnothing\t0\tlower")
        self.assertEqual(performance.compare([idle], [dataclasses.replace(idle, own=0.009, ratio=9)])[0], [])
        self.assertEqual(len(performance.compare([idle], [dataclasses.replace(idle, own=0.09, ratio=90)])[0]), 1)

    def test_what_is_new_is_not_worse(self):
        self.assertEqual(performance.compare([], figures_of(LOAD)), ([], []))

    def test_what_is_measured_no_more_is_told(self):
        self.assertEqual(performance.compare(figures_of(LOAD, RATE), figures_of(RATE)), ([], figures_of(LOAD)))

    def test_the_same_beside_another_peer_is_another_figure(self):
        other, = figures_of(LOAD.replace("one read", "many reads"))
        self.assertEqual(performance.compare(figures_of(LOAD), [other]), ([], figures_of(LOAD)))


class Confirming(unittest.TestCase):
    """What is worse is measured again, and counts where it is worse each time."""

    def confirmed(self, *factors):
        """With a figure that is so many times worse at each measurement; and which programs were measured."""
        asked, told, factors = [], [], iter(factors)

        def measure(names):
            asked.append(names)
            factor = next(factors)
            return [worse_by(LOAD, factor), *figures_of(RATE)] if "render" in names else [worse_by(LOAD, factor)]

        worse, gone = performance.confirmed(figures_of(LOAD, RATE), ["pages", "render"], measure, told.append)
        return [new.what for _, new in worse], gone, asked, len(told)

    def test_what_is_well_is_measured_once(self):
        self.assertEqual(self.confirmed(1.0), ([], [], [["pages", "render"]], 0))

    def test_what_is_worse_once_does_not_count(self):
        self.assertEqual(self.confirmed(2, 1.1), ([], [], [["pages", "render"], ["pages"]], 1))
        self.assertEqual(self.confirmed(2, 2, 1.1)[0], [])

    def test_what_is_worse_each_time_counts(self):
        self.assertEqual(self.confirmed(1.5, 1.3, 1.4), (["Load"], [], [["pages", "render"], ["pages"], ["pages"]], 2))


    def test_what_turns_worse_only_later_does_not_count(self):
        other = LOAD.replace("Load", "Save")
        rounds = iter([[worse_by(LOAD, 2), *figures_of(other)], [worse_by(LOAD, 2), worse_by(other, 2)],
                       [worse_by(LOAD, 2), worse_by(other, 2)]])
        worse, _ = performance.confirmed(figures_of(LOAD, other), ["pages"], lambda _: next(rounds), lambda _: None)
        self.assertEqual([new.what for _, new in worse], ["Load"])


class Aims(unittest.TestCase):
    def test_each_is_held_against_what_it_is_of(self):
        for line, met in ((LOAD, True), (RATE, False), (FIRST, False), (ALONE, None)):
            self.assertIs(figures_of(line)[0].met, met, line)

    def test_an_aim_that_is_just_reached_is_met(self):
        self.assertTrue(figures_of(LOAD.replace("\t3\t", "\t8\t"))[0].met)
        self.assertTrue(figures_of(RATE.replace("\t100\t", "\t400\t"))[0].met)
        self.assertTrue(figures_of(FIRST.replace("\t82\t", "\t63\t"))[0].met)


class Tables(unittest.TestCase):
    def test_a_row_has_the_peer_the_ratio_and_the_aim(self):
        self.assertIn("| Load | 6 ms | one read: 2 ms | 3 | 8 times | yes |", performance.table(figures_of(LOAD)))
        self.assertIn("| Pictures | 100 a second | empty ones: 400 a second | 0.25 | at least 400 a second | **no** |",
                      performance.table(figures_of(RATE)))
        self.assertIn("| 30 ms more | **no**, 49 ms |", performance.table(figures_of(FIRST)))
        self.assertIn("| Held | 12.5 ms |  |  |  |  |", performance.table(figures_of(ALONE)))

    def test_numbers_have_three_digits(self):
        self.assertEqual([performance.number(value) for value in (0, 0.00444, 0.5, 12.34, 99.96, 1234.5, 118)],
                         ["0", "0.00444", "0.5", "12.3", "100", "1,234", "118"])

    def test_peers_stand_side_by_side(self):
        lines = [LOAD, LOAD.replace("one read", "Other").replace("\t2\t", "\t9\t"), RATE]
        self.assertEqual(performance.peers_table(figures_of(*lines)),
                         "| | Raincast | one read | Other | empty ones |\n|---|---|---|---|---|\n"
                         "| Load | 6 ms | 2 ms | 9 ms |  |\n| Pictures | 100 a second |  |  | 400 a second |\n")

    def test_only_what_is_between_the_marks_changes(self):
        marks = "<!-- {}: written by ./bench -->\n", "<!-- end of {} -->\n"
        text = "a\n" + "old\n".join(mark.format("figures") for mark in marks) + "b\n"
        self.assertEqual(performance.between(text, "figures", "new\n"), text.replace("old\n", "\nnew\n\n"))


class Origins(unittest.TestCase):
    """Programs are measured together or one by one: the table says what is from when."""

    def runs(self, *lines):
        return performance.read(lines)[2]

    def test_where_all_is_from_once_it_is_said_once(self):
        self.assertEqual(performance.origins(self.runs(RUN, RUN.replace("start", "paint"))),
                         ("1 May 2026, version 5: a machine.\n", {}))

    def test_rows_that_are_from_another_time_say_so(self):
        words, marks = performance.origins(
            self.runs(RUN.replace("start", "serve").replace("1 May", "2 May"), RUN, RUN.replace("start", "paint")))
        self.assertEqual(words, "1 May 2026, version 5: a machine.\n\n"
                         "Rows with (2): 2 May 2026, version 5: a machine.\n")
        self.assertEqual(marks, {"serve": " (2)"})
        self.assertIn("| Memory (2) | 100 MiB |", performance.table(figures_of(MEMORY), marks))
        self.assertIn("| First picture | 82 ms |", performance.table(figures_of(FIRST), marks))


class Measuring(unittest.TestCase):
    """./bench without the building."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = pathlib.Path(folder.name)
        for name in ("scripts", "docs", "benchmarks", "build/benchmarks"):
            (self.tree / name).mkdir(parents=True)
        for name in ("measure", "performance.py"):
            shutil.copy(ROOT / "scripts" / name, self.tree / "scripts")
        self.program("scripts/loopback-only", 'exec "$@"')
        self.program("scripts/installed-size", self.printing(ALONE))
        (self.tree / "CMakeLists.txt").write_text("project(raincast VERSION 1.2.3)")
        (self.tree / "docs/performance.md").write_text("".join(
            f"<!-- {name}: written by ./bench -->\nas it was\n<!-- end of {name} -->\n"
            for name in ("figures", "curves", "peers")))
        self.bench("pages", self.printing(LOAD))
        self.bench("start", self.printing(FIRST, POINT))
        self.bench("peers", self.printing(LOAD.replace("Load", "First sight")))

    def program(self, name, text):
        (self.tree / name).write_text(f"#!/bin/sh\n{text}\n")
        (self.tree / name).chmod(0o755)

    def printing(self, *lines):
        return "".join("printf '%s\\n' '{}' >>$RAINCAST_FIGURES\n".format(re.sub(r"\t[a-z]+", "", line, count=1))
                       for line in lines)

    def bench(self, name, text):
        (self.tree / f"benchmarks/{name}_bench.cpp").touch()
        self.program(f"build/benchmarks/{name}_bench", text)

    def measured(self, *arguments):
        """The exit status."""
        return subprocess.run([self.tree / "scripts/measure", self.tree / "build", *arguments],
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode

    def read(self, name):
        return (self.tree / "docs" / name).read_text()

    def whats(self):
        return [(one.program, one.what, one.own) for one in
                performance.read(self.read("performance.tsv").splitlines())[0]]

    ALL = [("pages", "Load", 6), ("start", "First picture", 82), ("installed_size", "Held", 12.5)]

    def test_all_is_written(self):
        self.assertEqual(self.measured(), 0)
        self.assertEqual(self.whats(), self.ALL)
        self.assertIn("| Load | 6 ms |", self.read("performance.md"))
        self.assertIn("version 1.2.3", self.read("performance.md"))
        self.assertIn("growth-start-by-marks.svg", self.read("performance.md"))
        self.assertTrue((self.tree / "docs/growth-start-by-marks.svg").exists())
        self.assertIn("peers: written by ./bench -->\nas it was\n", self.read("performance.md"))

    def test_what_fails_keeps_its_rows_and_curves(self):
        self.measured()
        before = self.read("performance.md")
        for text in (self.printing(FIRST.replace("\t82\t", "\t99\t")) + "exit 3", "exec sleep 5", ""):
            self.bench("start", text)
            measure = self.tree / "scripts/measure"
            measure.write_text(measure.read_text().replace("SECONDS = 900", "SECONDS = 1"))
            self.assertEqual(self.measured(), 1, text)
            self.assertEqual(self.whats(), self.ALL)
            self.assertEqual(self.read("performance.md"), before)
            self.assertTrue((self.tree / "docs/growth-start-by-marks.svg").exists())

    def test_one_that_is_not_built_has_failed(self):
        self.measured()
        (self.tree / "build/benchmarks/start_bench").unlink()
        self.assertEqual(self.measured(), 1)
        self.assertEqual(self.whats(), self.ALL)

    def test_what_cannot_be_measured_here_is_left_out(self):
        self.measured()
        self.program("scripts/installed-size", "exit 77")
        self.assertEqual(self.measured(), 0)
        self.assertEqual(self.measured("--compare"), 0)
        self.assertEqual(self.whats(), self.ALL)

    def test_where_all_fail_nothing_is_written(self):
        self.bench("pages", "exit 1")
        self.assertEqual(self.measured("--write", "pages"), 1)
        self.assertFalse((self.tree / "docs/performance.tsv").exists())

    def test_names_alone_write_nothing(self):
        self.assertEqual(self.measured("pages"), 0)
        self.assertFalse((self.tree / "docs/performance.tsv").exists())

    def test_a_part_is_written_beside_the_rest(self):
        self.measured()
        (self.tree / "CMakeLists.txt").write_text("project(raincast VERSION 1.2.4)")
        self.bench("pages", self.printing(LOAD.replace("\t6\t", "\t5\t")))
        self.assertEqual(self.measured("--write", "pages"), 0)
        self.assertEqual(self.whats(), [("pages", "Load", 5), *self.ALL[1:]])
        self.assertRegex(self.read("performance.md"), r"(?m)^\d.*version 1\.2\.3:.*\n\nRows with \(2\): .*version 1\.2\.4:")
        self.assertIn("| Load (2) | 5 ms |", self.read("performance.md"))
        self.assertIn("| First picture | 82 ms |", self.read("performance.md"))

    def test_a_program_that_is_no_more_goes(self):
        self.measured()
        (self.tree / "benchmarks/pages_bench.cpp").unlink()
        self.assertEqual(self.measured(), 0)
        self.assertEqual(self.whats(), self.ALL[1:])

    def test_peers_have_a_section_of_their_own(self):
        self.assertEqual(self.measured("--peers"), 0)
        self.assertEqual(self.measured(), 0)
        document = self.read("performance.md")
        self.assertIn("| First sight | 6 ms | 2 ms |", document.split("<!-- peers")[1])
        self.assertNotIn("First sight", document.split("<!-- peers")[0])
        self.bench("peers", "exit 1")
        self.assertEqual(self.measured("--peers"), 1)
        self.assertEqual(self.read("performance.md"), document)

    def test_comparing_names_what_is_worse(self):
        self.measured()
        self.assertEqual(self.measured("--compare"), 0)
        self.bench("pages", self.printing(LOAD.replace("\t3\t", "\t9\t")))
        self.assertEqual(self.measured("--compare"), 1)


class Curves(unittest.TestCase):
    def points(self, *places):
        one = performance.read([POINT])[1][0]
        return [dataclasses.replace(one, x=x, own=own) for x, own in places]

    def drawn(self, points):
        return xml.etree.ElementTree.fromstring(performance.svg(points))

    def lines(self, points):
        kind = "{http://www.w3.org/2000/svg}polyline"
        return {line.get("class"): [tuple(map(float, place.split(","))) for place in line.get("points").split()]
                for line in self.drawn(points).iter(kind)}

    def test_the_lines_go_through_the_points(self):
        lines = self.lines(self.points((1, 50), (3, 100), (2, 0)))
        (left, middle), (_, low), (right, high) = lines["own"]  # in the order of what grows
        self.assertTrue(left < right and high < middle < low)
        self.assertEqual(len({y for _, y in lines["peer"]}), 1)

    def test_all_is_inside(self):
        for points in (self.points((1, 1), (100_000, 987)), self.points((5, 0))):
            for place in sum(self.lines(points).values(), []):
                self.assertTrue(0 < place[0] < performance.WIDTH and 0 < place[1] < performance.HEIGHT, place)

    def test_where_there_is_no_peer_there_is_one_line(self):
        points = [dataclasses.replace(point, peer_name="", peer=0) for point in self.points((1, 2), (2, 4))]
        self.assertEqual(list(self.lines(points)), ["own"])

    def test_words_are_those_of_the_curve(self):
        points = [dataclasses.replace(point, axis="marks < 9") for point in self.points((1, 2), (2, 4))]
        words = [text.text for text in self.drawn(points).iter("{http://www.w3.org/2000/svg}text")]
        for word in ("Start by marks, ms", "marks < 9", "ours", "none", "1", "2"):
            self.assertIn(word, words)

    def test_it_is_small(self):
        self.assertLess(len(performance.svg(self.points(*((x, x) for x in range(1, 8))))), 4_000)

    def test_files_are_named_after_curves(self):
        self.assertEqual(performance.file_name("Server, a frame's time (ms)"), "growth-server-a-frame-s-time-ms.svg")


unittest.main()
