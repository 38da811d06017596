"""What the benchmarks run: the program as users start it, and what they would use instead. Each contender takes the files
of PLACE/in, and says how long it took."""
import os
import pathlib
import signal
import sqlite3
import subprocess
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
BIN = ROOT / "build/release/bin"
PASSWORD = "secret"
KEY = PASSWORD.encode().hex().ljust(64, "0")
LONGEST = 1200  # seconds that one run may take


def shell(script, place):
    begin = time.monotonic()
    subprocess.run(["bash", "-c", script], cwd=place, check=True, timeout=LONGEST, stdout=subprocess.DEVNULL,
                   stderr=subprocess.PIPE)
    return time.monotonic() - begin


class Program:
    """The program on a profile of its own in a folder, from its start to its end."""

    def __init__(self, place, hidden=False, subfolders=False, prefix=()):
        self.data = place / "Quillon, Inc/Vantrell/Bin"
        self.data.mkdir(parents=True, exist_ok=True)
        for name in ("in", "out", "done", "rejected"):
            (place / name).mkdir(exist_ok=True)
        yes_no = ["#FALSE#", "#TRUE#"]
        (self.data / "ZEP.cfg").write_text(
            f'"{place}/in",{yes_no[subfolders]},"{place}/out","{place}/done",{yes_no[not hidden]},65535,0,7,0,"PM",7,#TRUE#,'
            f'"{place}/rejected",#FALSE#,#FALSE#\r\n', newline="")
        table = sqlite3.connect(self.data / "EDPasswords.mdb")
        table.execute("CREATE TABLE IF NOT EXISTS EncDecPasswords (Password text, Active boolean)")
        table.execute("INSERT INTO EncDecPasswords VALUES (?, 1)", (PASSWORD,))
        table.commit()
        table.close()
        self.begin = time.monotonic()
        platform = "xcb" if os.environ.get("DISPLAY") else "offscreen"
        self.process = subprocess.Popen(
            [*prefix, BIN / "ZEP"], stderr=subprocess.DEVNULL,
            env=dict(os.environ, ALLUSERSPROFILE=str(place), QT_QPA_PLATFORM=platform))

    def log(self):
        return b"".join(path.read_bytes() for path in self.data.glob("Daily Activity Logs/*"))

    def wait_for(self, is_reached):
        """Seconds from the start."""
        while not is_reached():
            if self.process.poll() is not None or time.monotonic() - self.begin > LONGEST:
                raise RuntimeError("the program did not get there")
            time.sleep(0.002)
        return time.monotonic() - self.begin

    def wait_for_pass(self, passes=1):
        sizes = {}

        def is_over():
            # The log is read only when it has grown: it can be long.
            now = {path: path.stat().st_size for path in self.data.glob("Daily Activity Logs/*")}
            if now == sizes:
                return False
            sizes.update(now)
            return any(self.tail_of(path).count(b"ZEP Is PAUSED") >= passes for path in now)
        return self.wait_for(is_over)

    @staticmethod
    def tail_of(path):
        with path.open("rb") as file:
            file.seek(max(0, path.stat().st_size - 2000))
            return file.read()

    def figures(self):
        """Seconds of processor time, and the most memory that was used, in MiB."""
        fields = pathlib.Path(f"/proc/{self.process.pid}/stat").read_text().rpartition(")")[2].split()
        ticks = (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text()
        return ticks, int(status.partition("VmHWM:")[2].split()[0]) / 1024

    def end(self):
        self.process.send_signal(signal.SIGTERM)
        try:
            self.process.wait(20)
        except subprocess.TimeoutExpired:
            self.process.kill()


def ours(place, hidden=False, subfolders=False):
    program = Program(place, hidden, subfolders)
    try:
        seconds = program.wait_for_pass()
        processor, memory = program.figures()
    finally:
        program.end()
    return seconds, {"processor": processor, "memory": memory}


def limit(group):
    def run(place):
        return shell(f'"{BIN}/bench_limit" in out done {group}', place), {}
    return run


def loop_of_openssl(ending):
    script = (f'for f in in/*; do n=${{f##*/}}; openssl enc -aes-256-ecb -K {KEY} -in "$f" -out "out/$n.enc" '
              f'&& {ending} mv "$f" done/; done; {ending.replace("&&", "")}')
    return lambda place: (shell(script, place), {})


def rclone(place):
    settings = place / "rclone.conf"
    hidden = subprocess.run(["rclone", "obscure", PASSWORD], check=True, capture_output=True, text=True).stdout.strip()
    settings.write_text(f"[crypted]\ntype = crypt\nremote = {place}/out\npassword = {hidden}\n")
    return shell(f'rclone --config "{settings}" move in crypted:', place), {}


def gpg(place):
    return shell('mkdir -m 700 keys; for f in in/*; do gpg --homedir keys --batch --passphrase secret --pinentry-mode '
                 'loopback -q -o "out/${f##*/}.gpg" --symmetric "$f" && mv "$f" done/; done', place), {}


def cp(place):
    return shell("cp -r in copy", place), {}


def check_aes(place, originals):
    done = subprocess.run([BIN / "bench_check", originals, place / "out", place / "done"], capture_output=True, text=True)
    return done.stderr.strip()


def check_rclone(place, originals):
    shell(f'rclone --config "{place}/rclone.conf" copy crypted: back', place)
    done = subprocess.run(["diff", "-rq", place / "back", originals], capture_output=True, text=True)
    return done.stdout.strip()


def check_gpg(place, originals):
    for original in sorted(originals.iterdir())[:5]:
        plain = subprocess.run(["gpg", "--homedir", place / "keys", "--batch", "--passphrase", "secret", "--pinentry-mode",
                                "loopback", "-q", "-d", place / "out" / (original.name + ".gpg")], capture_output=True)
        if plain.stdout != original.read_bytes():
            return f"{original.name} is not what it should be"
    return ""


def check_cp(place, originals):
    done = subprocess.run(["diff", "-rq", place / "copy", originals], capture_output=True, text=True)
    return done.stdout.strip()


OURS = {"ours, shown": (ours, check_aes), "ours, hidden": (lambda place: ours(place, hidden=True), check_aes)}
LIMITS = {"limit, one by one": (limit(1), check_aes), "limit, groups of 8": (limit(8), check_aes)}
OTHERS = {"openssl and mv": (loop_of_openssl(""), check_aes),
          "openssl, sync and mv": (loop_of_openssl("sync &&"), check_aes),
          "rclone move, crypt": (rclone, check_rclone), "gpg and mv": (gpg, check_gpg), "cp -r": (cp, check_cp)}
# For those that take milliseconds for each file; their time is counted up.
MOST_FILES = {"openssl and mv": 500, "openssl, sync and mv": 500, "gpg and mv": 30}
