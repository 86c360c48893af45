"""A PostgreSQL server of a test's own.

    postgres_server.py PROGRAM [ARGUMENT...]

runs a program that finds an empty database at the address in KELDLL_TEST_POSTGRES, and ends with its status.
"""

import os
import pwd
import shutil
import signal
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent.parent / "screen"))
sys.path.insert(0, str(Path(__file__).parent.parent / "printing"))
from cups_server import free_port  # noqa: E402
from x_server import wait_for  # noqa: E402

USER = "books"

# Nothing of a test's database needs to outlive a power cut.
OPTIONS = {
    "listen_addresses": "127.0.0.1",
    "unix_socket_directories": "",
    "fsync": "off",
    "synchronous_commit": "off",
    "full_page_writes": "off",
    "autovacuum": "off",
    "timezone": "UTC",
}


def programs():
    """The folder of the newest server that is installed; distributions keep it out of PATH."""
    folders = sorted(Path("/usr/lib/postgresql").glob("*/bin"), key=lambda folder: int(folder.parent.name))
    return folders[-1] if folders else Path(shutil.which("postgres") or "/usr/bin/postgres").parent


def unprivileged():
    """What a command begins with: the server refuses to run as root."""
    if os.geteuid() != 0:
        return []
    nobody = pwd.getpwnam("nobody")
    return ["setpriv", f"--reuid={nobody.pw_uid}", f"--regid={nobody.pw_gid}", "--clear-groups"]


class PostgresServer:
    """postgres on a free port of the loopback interface. Close it with close()."""

    def __init__(self):
        self.process = None
        self.folder = Path(tempfile.mkdtemp(prefix="keldll-postgres-"))
        try:
            if os.geteuid() == 0:
                os.chown(self.folder, pwd.getpwnam("nobody").pw_uid, -1)
            self.start()
        except BaseException:
            self.close()
            raise

    def start(self):
        data = self.folder / "data"
        made = subprocess.run([*unprivileged(), programs() / "initdb", "-D", data, "-U", USER, "-A", "trust", "-E", "UTF8",
                               "--no-locale", "--no-sync"], cwd=self.folder, text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT)
        if made.returncode != 0:
            raise AssertionError("initdb: " + made.stdout)
        self.port = free_port()
        options = [word for name, value in OPTIONS.items() for word in ("-c", f"{name}={value}")]
        death = [] if shutil.which("setpriv") is None else ["setpriv", "--pdeathsig", "INT"]
        if death and unprivileged():
            death = [*unprivileged(), "--pdeathsig", "INT"]
        with open(self.folder / "log", "wb") as log:
            # The server stops also when this program is killed.
            self.process = subprocess.Popen([*death, programs() / "postgres", "-D", data, "-p", str(self.port), *options],
                                            cwd=self.folder, stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        self.address = f"postgresql://{USER}@127.0.0.1:{self.port}/postgres"
        wait_for("the database server", self.answers)

    def answers(self):
        if self.process.poll() is not None:
            raise AssertionError("postgres: " + (self.folder / "log").read_text())
        return subprocess.run([programs() / "pg_isready", "-q", "-h", "127.0.0.1", "-p", str(self.port)]).returncode == 0

    def close(self):
        if self.process is not None:
            self.process.send_signal(signal.SIGINT)  # a fast shutdown: it waits for no client
            self.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)


def main():
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda received, _: sys.exit(128 + received))
    server = PostgresServer()
    try:
        return subprocess.run(sys.argv[1:], env={**os.environ, "KELDLL_TEST_POSTGRES": server.address}).returncode
    finally:
        server.close()


if __name__ == "__main__":
    sys.exit(main())
