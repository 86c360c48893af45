"""A print server of a test's own, with queues whose printers are files."""

import grp
import os
import pwd
import socket
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent.parent / "screen"))
from x_server import wait_for  # noqa: E402

# A printer that understands PDF, prints Letter unless told otherwise, and reaches all but 18 points of the paper.
PPD = """*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "PDF.PPD"
*Manufacturer: "Test"
*Product: "(PDF)"
*ModelName: "PDF"
*ShortNickName: "PDF"
*NickName: "PDF"
*PSVersion: "(3010.000) 0"
*LanguageLevel: "3"
*ColorDevice: True
*DefaultColorSpace: RGB
*cupsFilter: "application/pdf 0 -"
*OpenUI *PageSize/Media Size: PickOne
*DefaultPageSize: Letter
*PageSize Letter/US Letter: "<</PageSize[612 792]>>setpagedevice"
*PageSize A4/A4: "<</PageSize[595 842]>>setpagedevice"
*CloseUI: *PageSize
*OpenUI *PageRegion: PickOne
*DefaultPageRegion: Letter
*PageRegion Letter/US Letter: "<</PageSize[612 792]>>setpagedevice"
*PageRegion A4/A4: "<</PageSize[595 842]>>setpagedevice"
*CloseUI: *PageRegion
*DefaultImageableArea: Letter
*ImageableArea Letter/US Letter: "18 18 594 774"
*ImageableArea A4/A4: "18 18 577 824"
*DefaultPaperDimension: Letter
*PaperDimension Letter/US Letter: "612 792"
*PaperDimension A4/A4: "595 842"
"""

DAEMON = """Listen 127.0.0.1:{port}
ServerName 127.0.0.1
ServerAlias *
HostNameLookups Off
Browsing No
WebInterface No
DefaultShared No
LogLevel debug
MaxLogSize 0
<Location />
  Order allow,deny
  Allow all
</Location>
<Policy default>
  <Limit All>
    Order deny,allow
  </Limit>
</Policy>
"""

# What stands between the daemon and the printer: it keeps every job as a file, named by queue and number. Its mode makes
# the daemon run it as its own user.
BACK_END = """#!/bin/sh
[ $# = 0 ] && exit
job="${DEVICE_URI#keep:}-$1"
cat ${6+"$6"} > "$job.part" && mv "$job.part" "$job"
"""

# The daemon insists on another user for filters when it runs as root.
FILES = """ServerRoot {folder}/etc
ServerBin {folder}/bin
CacheDir {folder}/cache
StateDir {folder}/state
RequestRoot {folder}/spool
TempDir {folder}/spool/tmp
ErrorLog {folder}/error_log
AccessLog {folder}/access_log
PageLog {folder}/page_log
SyncOnClose No
User {user}
Group {group}
"""


def free_port():
    with socket.socket() as listener:
        listener.bind(("127.0.0.1", 0))
        return listener.getsockname()[1]


class CupsServer:
    """cupsd on a free port of the loopback interface. Close it with close().

    Its queues: raw (bytes as they come), pdf (the default), stopped, closed (takes no jobs).
    """

    def __init__(self, folder):
        self.folder = Path(folder)
        for name in ("etc", "cache", "state", "spool/tmp", "bin/backend", "out"):
            (self.folder / name).mkdir(parents=True)
        (self.folder / "bin" / "daemon").symlink_to("/usr/lib/cups/daemon")
        back_end = self.folder / "bin" / "backend" / "keep"
        back_end.write_text(BACK_END)
        back_end.chmod(0o700)
        self.start()
        (self.folder / "pdf.ppd").write_text(PPD)
        self.add_queue("raw")
        self.add_queue("pdf", "-P", str(self.folder / "pdf.ppd"))
        self.run("lpadmin", "-d", "pdf")
        for name, refusal in (("stopped", "cupsdisable"), ("closed", "cupsreject")):
            self.add_queue(name, "-P", str(self.folder / "pdf.ppd"))
            self.run(refusal, name)

    def start(self):
        root = os.geteuid() == 0
        user = pwd.getpwnam("lp") if root else pwd.getpwuid(os.geteuid())
        (self.folder / "cups-files.conf").write_text(FILES.format(
            folder=self.folder, user=user.pw_name, group=grp.getgrgid(user.pw_gid).gr_name))
        self.port = free_port()
        (self.folder / "cupsd.conf").write_text(DAEMON.format(port=self.port))
        self.environment = {**os.environ, "CUPS_SERVER": f"127.0.0.1:{self.port}"}
        self.process = subprocess.Popen(
            ["/usr/sbin/cupsd", "-f", "-c", str(self.folder / "cupsd.conf"), "-s", str(self.folder / "cups-files.conf")],
            env=self.environment, stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for("the print server", self.answers)

    def answers(self):
        if self.process.poll() is not None:
            raise AssertionError("cupsd: " + (self.folder / "error_log").read_text())
        with socket.socket() as client:
            return client.connect_ex(("127.0.0.1", self.port)) == 0

    def close(self):
        self.process.terminate()
        self.process.wait()

    def add_queue(self, name, *options):
        self.run("lpadmin", "-p", name, "-v", f"keep:{self.folder}/out/{name}", *options, "-E")

    def run(self, *words):
        return subprocess.run(words, env=self.environment, check=True, text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE).stdout

    def jobs(self, queue, which):
        """The numbers of a queue's jobs, the last first."""
        said = self.run("lpstat", "-W", which, "-o", queue)
        return [int(line.split()[0].rsplit("-", 1)[1]) for line in said.splitlines()]

    def waiting(self, queue):
        return self.jobs(queue, "not-completed")

    def printed(self, queue):
        """Waits until the queue has sent what it has; returns the files with what its printer got, job by job."""
        wait_for(f"the jobs of {queue}", lambda: not self.waiting(queue))
        return [self.folder / "out" / f"{queue}-{job}" for job in sorted(self.jobs(queue, "completed"))]


def main():
    """Serves the program that started it, which is told the server's address, until it closes the pipe."""
    server = CupsServer(sys.argv[1])
    try:
        print(server.environment["CUPS_SERVER"], flush=True)
        sys.stdin.read()
    finally:
        server.close()


if __name__ == "__main__":
    main()
