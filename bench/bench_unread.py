"""A client that asks and never reads: the program's resident memory while its answers
pile up, and the drop at the bound.

usage: /usr/bin/python3 bench/bench_unread.py build/qz7740
"""
import re
import socket
import subprocess
import sys
import time

program = subprocess.Popen([sys.argv[1], "--headless", "--simulate", "--remote", "0"],
                           stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
port = int(re.search(r":(\d+)", program.stdout.readline()).group(1))


def resident_kb():
    with open("/proc/%d/status" % program.pid) as status:
        for line in status:
            if line.startswith("VmRSS"):
                return int(line.split()[1])
    return 0


start = peak = resident_kb()
client = socket.create_connection(("127.0.0.1", port))
client.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)
line = b"*IDN?;" * 10000 + b"*IDN?\n"
sent = 0
try:
    for _ in range(2000):
        client.sendall(line)
        sent += len(line)
        peak = max(peak, resident_kb())
    print("never dropped after %.1f MB" % (sent / 1e6))
except OSError as e:
    print("dropped after %.1f MB of input (%s)" % (sent / 1e6, type(e).__name__))
time.sleep(1)
print("resident memory: start %d kB, peak %d kB, after %d kB" % (start, peak, resident_kb()))
program.terminate()
program.wait()
print("standard error:", program.stderr.read().strip())
