# SPDX-License-Identifier: MIT
"""Screens without glass for scripts that look at the viewer: starts programs on them and takes pictures."""
import functools, operator, os, pathlib, struct, subprocess, sys, time, zlib


def png(width, height, rows):
    """A PNG of rows of red, green and blue, with a byte 0 in front of each row."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 9)) +
            chunk(b"IEND", b""))


def picture_of(bgrx, stride, left, top, right, bottom):
    """A PNG of a part of a screen, whose pixels are blue, green, red and a byte that says nothing."""
    rows = bytearray()
    for y in range(top, bottom):
        line = bgrx[y * stride + 4 * left:y * stride + 4 * right]
        row = bytearray(3 * (right - left))
        row[0::3], row[1::3], row[2::3] = line[2::4], line[1::4], line[0::4]
        rows += b"\0" + row
    return png(right - left, bottom - top, bytes(rows))


def until(what, look, good=bool, seconds=120):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        found = look()
        if good(found):
            return found
        time.sleep(0.3)
    sys.exit(f"{what} took over {seconds} s")


class Session:
    """Programs that share a home and end with the session."""

    def __init__(self, folder):
        self.folder, self.started = folder, []
        # A user's own settings of displays lead nowhere here.
        self.environment = {name: value for name, value in os.environ.items()
                            if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}
        self.environment |= {"HOME": folder, "XDG_RUNTIME_DIR": folder, "LANGUAGE": "en"}

    def start(self, *command, **environment):
        process = subprocess.Popen([str(word) for word in command], env=self.environment | environment)
        self.started.append(process)
        return process

    def end(self, process):
        process.terminate()
        process.wait()
        self.started.remove(process)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for process in reversed(list(self.started)):
            self.end(process)


class XScreen:
    """A screen of X11 that shows itself in a file."""

    def __init__(self, session, number, width, height):
        self.display, self.width, self.height = f":{number}", width, height
        self.file = pathlib.Path(session.folder, "Xvfb_screen0")
        session.start("Xvfb", self.display, "-screen", "0", f"{width}x{height}x24", "-nolisten", "tcp",
                      "-fbdir", session.folder)
        until("Xvfb", pathlib.Path(f"/tmp/.X11-unix/X{number}").exists)

    def pixels(self):
        """The pixels and the bytes of a row."""
        content = self.file.read_bytes()
        header = struct.unpack(">25I", content[:100])
        return content[header[0] + 12 * header[19]:], header[12]  # behind the name and the map of colours

    def picture(self):
        pixels, stride = self.pixels()
        return picture_of(pixels, stride, 0, 0, self.width, self.height)

    def picture_of_windows(self):
        """What is not the black ground of the screen; nothing where there is nothing else."""
        pixels, stride = self.pixels()
        colours = int.from_bytes(b"\xff\xff\xff\0" * self.width, "little")
        rows = [int.from_bytes(pixels[y * stride:y * stride + 4 * self.width], "little") & colours
                for y in range(self.height)]
        drawn = [y for y, row in enumerate(rows) if row]
        if not drawn:
            return None
        together = functools.reduce(operator.or_, rows)
        left = ((together & -together).bit_length() - 1) // 32
        right = (together.bit_length() + 31) // 32
        return picture_of(pixels, stride, left, drawn[0], right, drawn[-1] + 1)
