"""Runs the job's command file under Wine's cmd and hands the job's task to Wine's schtasks.

usage: job_test.py PROGRAM JOB-FOLDER

In the environment of the sealed Wine prefix, with build/scratch (drive X:) as the current folder.
Wine's cmd drops a "%" from the text of a variable, so only the name of a swept file has one here.
"""

import os
import shutil
import subprocess
import sys
import time
import unittest
import xml.etree.ElementTree
from pathlib import Path

PROGRAM, JOB = map(Path, sys.argv[1:])
FOLDER = Path("job (x86) & more !now!")
SUITE, SWEPT, LOG = FOLDER / "suite", FOLDER / "old jobs", FOLDER / "new logs" / "clean.log"
REPORT = LOG.with_suffix(".log.report")
OLD = SWEPT / "100% of 5% !x!.log"


def on_drive_x(path):
    return "X:\\" + str(path).replace("/", "\\")


def make_file(path, content=b""):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)
    os.utime(path, (time.time() - 20 * 86400,) * 2)


def wine(*command):
    return subprocess.run(["wine", *command], timeout=60, check=False, stdin=subprocess.DEVNULL,
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode


def run_job(*arguments, folder="job"):
    return wine(on_drive_x(SUITE / folder / "clean.cmd"), *arguments)


class Job(unittest.TestCase):
    def setUp(self):
        shutil.rmtree(FOLDER, ignore_errors=True)  # left by a test that was killed
        self.addCleanup(shutil.rmtree, FOLDER)
        lines = (JOB / "clean_old_files.cmd").read_bytes().split(b"\r\n")
        lines[lines.index(b"set arguments=")] += f'-do 14 "{on_drive_x(SWEPT)}"'.encode()
        log = next(i for i, line in enumerate(lines) if line.startswith(b'set "log='))
        lines[log] = f'set "log={on_drive_x(LOG)}"'.encode()
        make_file(SUITE / "bin/win64/clean.cmd", b"\r\n".join(lines))
        make_file(SUITE / "job/clean.cmd", b"\r\n".join(lines))
        make_file(SUITE / "bin/win64/kxDeleteOldFiles.exe", PROGRAM.read_bytes())
        make_file(SUITE / "sub/cfg_global/x")
        make_file(OLD)

    def test_runs_the_program_beside_it_and_makes_the_log_and_its_folder(self):
        self.assertEqual(run_job(folder="bin/win64"), 0)
        self.assertFalse(OLD.exists())
        self.assertEqual(os.listdir(LOG.parent), [LOG.name])
        program = on_drive_x(SUITE / "bin/win64/kxDeleteOldFiles.exe")
        self.assertIn(f'"{program}" -do 14 "{on_drive_x(SWEPT)}"\r\n.---'.encode(), LOG.read_bytes())

    def test_takes_arguments_and_logs_names_unchanged(self):
        self.assertEqual(run_job("-do", "7", on_drive_x(SWEPT), "-v"), 0)
        self.assertIn(b"     -del 100% of 5% !x!.log\r\n", LOG.read_bytes())

    def test_ends_with_2_only_when_the_report_of_this_run_has_errors(self):
        make_file(SWEPT / "5% !x!" / "plan ")  # Windows cannot name it, so its folder stays
        self.assertEqual(run_job(), 2)
        shutil.rmtree(SWEPT / "5% !x!")
        make_file(REPORT, b"Errors:")  # of a run that was killed
        self.assertEqual(run_job(), 0)
        self.assertEqual(LOG.read_bytes().count(b"Errors:"), 1)
        self.assertEqual(LOG.read_bytes().count(b" files deleted"), 2)
        self.assertEqual(LOG.with_suffix(".log.killed").read_bytes(), b"Errors:")

    def test_ends_with_the_exit_code_of_the_program(self):
        self.assertEqual(run_job("-v"), 255)  # -1
        self.assertEqual(run_job("-do", "week", on_drive_x(SWEPT)), 3)
        shutil.rmtree(SUITE / "sub")
        self.assertEqual(run_job(), 1)
        self.assertIn(b"Unable to get KX Root path", LOG.read_bytes())

    def test_ends_with_1_when_there_is_no_program(self):
        shutil.rmtree(SUITE / "bin")
        self.assertEqual(run_job(), 1)
        self.assertIn(b"There is no such program", LOG.read_bytes())

    def test_ends_with_4_and_deletes_nothing_when_the_log_cannot_be_made(self):
        make_file(LOG.parent)
        self.assertEqual(run_job(), 4)
        self.assertTrue(OLD.exists())

    def test_ends_with_4_and_deletes_nothing_while_another_run_or_program_holds_the_log(self):
        for held in (REPORT, LOG):
            make_file(held)
            make_file(FOLDER / "hold.cmd", f'@pause >"{on_drive_x(held)}"'.encode())
            with subprocess.Popen(["wine", on_drive_x(FOLDER / "hold.cmd")], stdin=subprocess.PIPE) as other:
                while held.stat().st_size == 0:
                    time.sleep(0.01)
                self.assertEqual(run_job(), 4, held)
                other.communicate(b"\r\n")
            self.assertTrue(OLD.exists())


class Task(unittest.TestCase):
    def test_runs_every_night_to_its_end_on_battery_too_and_makes_up_for_missed_runs(self):
        task = xml.etree.ElementTree.parse(JOB / "clean_old_files.xml")
        found = {leaf.tag.split("}")[1]: leaf.text for leaf in task.iter()}
        self.assertRegex(found["StartBoundary"], "T03:00:00$")
        self.assertRegex(found["Command"], r"\\clean_old_files\.cmd$")
        self.assertLessEqual({
            "DaysInterval": "1", "StartWhenAvailable": "true", "DisallowStartIfOnBatteries": "false",
            "StopIfGoingOnBatteries": "false", "ExecutionTimeLimit": "PT0S",
            "MultipleInstancesPolicy": "IgnoreNew"}.items(), found.items())

    def test_is_taken_by_schtasks_which_refuses_a_broken_one(self):
        self.addCleanup(Path("task.xml").unlink)
        self.addCleanup(wine, "schtasks", "/delete", "/tn", "kx", "/f")
        good = (JOB / "clean_old_files.xml").read_bytes()
        broken = good.replace("</Task>".encode("utf-16-le"), "</Tusk>".encode("utf-16-le"))
        for content, exit_code in ((broken, 1), (good, 0)):
            Path("task.xml").write_bytes(content)
            self.assertEqual(wine("schtasks", "/create", "/tn", "kx", "/xml", r"X:\task.xml"), exit_code)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
