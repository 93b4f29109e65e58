"""Measures a Windows program under Wine: time, memory, system calls."""

import contextlib
import resource
import signal
import subprocess
import time
from collections.abc import Iterator
from dataclasses import dataclass
from typing import Any

SILENT: dict[str, Any] = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL}


@dataclass(frozen=True)
class Cost:
    wall: float  # seconds
    cpu: float  # seconds, of the program and of the Wine server during the run


class Meter:
    """Runs programs one at a time, with a Wine server of its own."""

    def __init__(self, server: int) -> None:
        self.server = server  # its process id

    def _cpu(self) -> float:
        """The processor time of the server and of all programs that have ended, in seconds."""
        programs = resource.getrusage(resource.RUSAGE_CHILDREN)
        with open(f"/proc/{self.server}/schedstat", encoding="ascii") as stat:
            server = int(stat.read().split()[0]) / 1e9
        return programs.ru_utime + programs.ru_stime + server

    def run(self, command: list[str], expected_exit: int = 0) -> tuple[Cost, str]:
        """Runs a program and returns its cost and its output."""
        with open("output.txt", "w+b") as output:
            cpu, start = self._cpu(), time.perf_counter()
            exit_code = subprocess.call(["wine", *command], stdin=subprocess.DEVNULL, stdout=output)
            wall = time.perf_counter() - start
            time.sleep(0.02)  # the server still cleans up after the program
            cost = Cost(wall, self._cpu() - cpu)
            output.seek(0)
            text = output.read().decode("latin1")
        if exit_code != expected_exit:
            raise SystemExit(f"bench: {command} ended with {exit_code}\n{text}")
        return cost, text

    def peak_memory(self, command: list[str]) -> int:
        """Returns the peak memory of a run, in bytes."""
        # Through GNU time: a child of this process would start with this process's memory as its peak.
        timed = ["time", "-q", "-f", "%M", "-o", "peak.txt", "wine", *command]
        subprocess.run(timed, check=True, **SILENT)
        with open("peak.txt", encoding="ascii") as peak:
            return int(peak.read()) * 1024

    def system_calls(self, command: list[str]) -> int:
        """Returns the number of system calls that a run makes, those of the Wine server included."""
        strace = ["strace", "-qq", "-f", "-c", "-U", "calls,name", "-o"]
        attached = subprocess.Popen([*strace, "server.txt", "-p", str(self.server)])
        time.sleep(0.5)
        subprocess.run([*strace, "program.txt", "wine", *command], check=True, **SILENT)
        time.sleep(0.2)
        attached.send_signal(signal.SIGINT)
        attached.wait()
        return _total_calls("program.txt") + _total_calls("server.txt")


def _total_calls(summary: str) -> int:
    with open(summary, encoding="ascii") as lines:
        for line in lines:
            if line.rstrip().endswith("total"):
                return int(line.split()[0])
    raise SystemExit(f"bench: no total in {summary}")


@contextlib.contextmanager
def meter() -> Iterator[Meter]:
    """Starts the server as a child of this process, so that it has the same core."""
    subprocess.run(["wineserver", "-k"], check=False)  # fails when none is running
    subprocess.run(["wineserver", "-w"], check=True)
    with subprocess.Popen(["wineserver", "-f", "-p"]) as server:
        try:
            # This also starts Wine's services. They must not hold our output open.
            subprocess.run(["wine", "cmd", "/c", "exit"], check=True, **SILENT)
            yield Meter(server.pid)
        finally:
            subprocess.run(["wineserver", "-k"], check=True)
