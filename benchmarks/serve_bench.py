#!/usr/bin/env python3
"""A scan that is served to fifty readers beside one that nobody reads: WINE TVNHOST FOLDER, figures to FOLDER/serve.json.

The scans are in turns and the fastest pass of each counts. Waiting is a tenth of real time; the readers take every event,
on this same machine."""
import json
import re
import selectors
import signal
import socket
import subprocess
import sys
import threading
import urllib.request

READERS, ROUNDS, PASSES = 50, 3, 2


class Readers:
    """Follow the events until the server ends."""

    def __init__(self, port, count):
        self.bytes = 0
        self.selector = selectors.DefaultSelector()
        for _ in range(count):
            reader = socket.create_connection(("127.0.0.1", port))
            reader.sendall(b"GET /events HTTP/1.1\r\nHost: localhost\r\n\r\n")
            self.selector.register(reader, selectors.EVENT_READ)
        self.thread = threading.Thread(target=self.read, daemon=True)
        self.thread.start()

    def read(self):
        while self.selector.get_map():
            for key, _ in self.selector.select():
                try:
                    taken = len(key.fileobj.recv(1 << 16))
                except OSError:
                    taken = 0
                self.bytes += taken
                if taken == 0:
                    self.selector.unregister(key.fileobj)
                    key.fileobj.close()


def scan(wine, host, folder, readers):
    """Seconds of the fastest pass, and the bytes that were read meanwhile."""
    command = [wine, host, "serve", "net.ini", "--network", "model.ini", "--time-scale", "0.1", "--repeat", str(PASSES),
               "--limits", "outlet", "--listen", "127.0.0.1:0"]
    with subprocess.Popen(command, cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                          stderr=subprocess.PIPE, text=True) as server:
        link = next(found[1] for line in server.stderr if (found := re.match(r"Serving at (\S+)", line)))
        threading.Thread(target=server.stderr.read, daemon=True).start()
        following = Readers(int(link.rstrip("/").rsplit(":", 1)[1]), readers)
        seconds, phase = [], ""
        with urllib.request.urlopen(link + "events", timeout=600) as events:
            while phase != "ended":
                if events.readline().startswith(b"id:"):
                    with urllib.request.urlopen(link + "api/run") as answer:
                        now = json.load(answer)["now"]
                    phase = now["phase"]
                    seconds.append(now.get("lastPassSeconds", float("inf")))
        server.send_signal(signal.SIGINT)
    return min(seconds), following.bytes


def main(wine, host, folder):
    for command in (["import", "--from", "306", "--to", "458", "--step", "8", "--order", "256", "--ber-samples", "1",
                     "-o", "net.ini"],
                    ["network", "--from", "306", "--to", "458", "--step", "8", "--order", "256", "-o", "model.ini"]):
        subprocess.run([wine, host, *command, "--force"], cwd=folder, check=True, stdout=subprocess.DEVNULL)
    rounds = [(scan(wine, host, folder, 0)[0], *scan(wine, host, folder, READERS)) for _ in range(ROUNDS)]
    alone, watched = min(one[0] for one in rounds), min(one[1] for one in rounds)
    figures = {"secondsAlone": alone, "secondsWatched": watched, "readers": READERS, "ratio": watched / alone,
               "bytesEachReader": rounds[-1][2] // READERS}
    with open(f"{folder}/serve.json", "w", encoding="utf-8") as file:
        json.dump(figures, file, indent=1)
    print(f"A pass of 20 channels takes {alone:.2f} s unwatched and {watched:.2f} s with {READERS} readers "
          f"({watched / alone:.2f} times), who take {figures['bytesEachReader'] // 1024} KiB each")


if __name__ == "__main__":
    main(*sys.argv[1:])
