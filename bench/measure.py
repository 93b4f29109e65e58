"""Measures a Windows program under Wine: time, memory, system calls."""

import os
import signal
import subprocess
import time
from dataclasses import dataclass

TIMEOUT = 1800  # seconds


@dataclass(frozen=True)
class Cost:
    wall: float  # seconds
    cpu: float  # seconds, of the program and of the Wine server during the run


def _find_server():
    prefix = f"WINEPREFIX={os.environ['WINEPREFIX']}".encode()
    for process in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{process}/comm", encoding="ascii") as comm:
                if not comm.read().startswith("wineserver"):
                    continue
            with open(f"/proc/{process}/environ", "rb") as environment:
                if prefix in environment.read().split(b"\0"):
                    return int(process)
        except (FileNotFoundError, ProcessLookupError):
            continue  # it has just ended
    return None


def server():
    """Returns the process id of the prefix's Wine server; starts the server if it is not running.

    The server ends after an idle minute.
    """
    process = _find_server()
    if process is None:
        subprocess.run(["wineserver", "-p60"], check=True)
        subprocess.run(["wine", "cmd", "/c", "exit"], check=True, stdin=subprocess.DEVNULL)
        process = _find_server()
    os.sched_setaffinity(process, os.sched_getaffinity(0))
    return process


def _cpu_of(process):
    with open(f"/proc/{process}/schedstat", encoding="ascii") as stat:
        return int(stat.read().split()[0]) / 1e9


def _run_once(command, output):
    process = server()
    server_before = _cpu_of(process)
    start = time.perf_counter()
    child = subprocess.Popen(["wine", *command], stdin=subprocess.DEVNULL, stdout=output)
    signal.signal(signal.SIGALRM, lambda *_: child.kill())  # its exit code ends the benchmark
    signal.alarm(TIMEOUT)
    _, status, usage = os.wait4(child.pid, 0)
    wall = time.perf_counter() - start
    signal.alarm(0)
    child.returncode = os.waitstatus_to_exitcode(status)
    time.sleep(0.02)  # the server still cleans up after the program
    cpu = usage.ru_utime + usage.ru_stime + _cpu_of(process) - server_before
    return Cost(wall, cpu), child.returncode


def run(command, expected_exit=0):
    """Runs a program and returns its cost and its output."""
    with open("output.txt", "w+b") as output:
        cost, exit_code = _run_once(command, output)
        if exit_code == 1 and output.tell() == 0:
            # Once in several thousand runs Wine ends like this without starting the program.
            cost, exit_code = _run_once(command, output)
        output.seek(0)
        text = output.read().decode("latin1")
    if exit_code != expected_exit:
        raise SystemExit(f"bench: {command} ended with {exit_code}\n{text}")
    return cost, text


def peak_memory(command):
    """Returns the peak memory of a run, in bytes."""
    server()
    # Through GNU time: a child of this process would start with this process's memory as its peak.
    timed = ["time", "-q", "-f", "%M", "-o", "peak.txt", "wine", *command]
    subprocess.run(timed, check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                   timeout=TIMEOUT)
    with open("peak.txt", encoding="ascii") as peak:
        return int(peak.read()) * 1024


def _total_calls(summary):
    with open(summary, encoding="ascii") as lines:
        for line in lines:
            if line.rstrip().endswith("total"):
                return int(line.split()[0])
    raise SystemExit(f"bench: no total in {summary}")


def system_calls(command):
    """Returns the number of system calls that a run makes, those of the Wine server included."""
    process = server()
    strace = ["strace", "-qq", "-f", "-c", "-U", "calls,name"]
    attached = subprocess.Popen([*strace, "-o", "server.txt", "-p", str(process)])
    time.sleep(0.5)
    subprocess.run([*strace, "-o", "program.txt", "wine", *command], check=True,
                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, timeout=TIMEOUT)
    time.sleep(0.2)
    attached.send_signal(signal.SIGINT)
    attached.wait()
    return _total_calls("program.txt") + _total_calls("server.txt")
