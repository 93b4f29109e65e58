"""Measures a Windows program under Wine: time, memory, system calls."""

import resource
import signal
import subprocess
import time
from typing import NamedTuple

Server = subprocess.Popen[bytes]


class Cost(NamedTuple):
    wall: float  # seconds
    cpu: float  # seconds, of the program and of the Wine server during the run


def start_server() -> Server:
    """Starts the Wine server as a child, which has our core."""
    subprocess.run(["wineserver", "-k"], check=False)  # fails when none is running
    subprocess.run(["wineserver", "-w"], check=True)
    server = subprocess.Popen(["wineserver", "-f", "-p"], stdout=subprocess.DEVNULL)
    _run_quietly("wine", "cmd", "/c", "exit")  # also starts Wine's services
    return server


def _run_quietly(*command: str) -> None:
    """Runs a command whose time is not measured, for at most half an hour."""
    subprocess.run(["timeout", "1800", *command], check=True, stdin=subprocess.DEVNULL,
                   stdout=subprocess.DEVNULL)


def _cpu(server: Server) -> float:
    """Processor time of the server and of all programs that have ended."""
    programs = resource.getrusage(resource.RUSAGE_CHILDREN)
    with open(f"/proc/{server.pid}/schedstat", encoding="ascii") as stat:
        return programs.ru_utime + programs.ru_stime + int(stat.read().split()[0]) / 1e9


def run(server: Server, command: list[str], expected_exit: int = 0) -> tuple[Cost, str]:
    """Runs a program and returns its cost and its output."""
    with open("output.txt", "w+b") as output:
        cpu, start = _cpu(server), time.perf_counter()
        exit_code = subprocess.call(["wine", *command], stdin=subprocess.DEVNULL, stdout=output)
        wall = time.perf_counter() - start
        time.sleep(0.02)  # the server still cleans up after the program
        cost = Cost(wall, _cpu(server) - cpu)
        output.seek(0)
        text = output.read().decode("latin1")
    if server.poll() is not None:
        raise SystemExit(f"bench: the Wine server ended during {command}\n{text}")
    if exit_code != expected_exit:
        raise SystemExit(f"bench: {command} ended with {exit_code}\n{text}")
    return cost, text


def peak_memory(_server: Server, command: list[str]) -> int:
    """Returns the peak memory of a run, in bytes."""
    # Through GNU time: a child of this process would start with this process's memory as its peak.
    _run_quietly("time", "-q", "-f", "%M", "-o", "peak.txt", "wine", *command)
    with open("peak.txt", encoding="ascii") as peak:
        return int(peak.read()) * 1024


def system_calls(server: Server, command: list[str]) -> int:
    """Returns the number of system calls that a run makes, those of the server included."""
    strace = ["strace", "-qq", "-f", "-c", "-U", "calls,name", "-o"]
    attached = subprocess.Popen([*strace, "server.txt", "-p", str(server.pid)])
    time.sleep(0.5)
    _run_quietly(*strace, "program.txt", "wine", *command)
    time.sleep(0.2)
    attached.send_signal(signal.SIGINT)
    attached.wait()
    return _total_calls("program.txt") + _total_calls("server.txt")


def _total_calls(summary: str) -> int:
    with open(summary, encoding="ascii") as lines:
        return next(int(line.split()[0]) for line in lines if line.rstrip().endswith("total"))
