#!/usr/bin/python3
"""Usage: icon_renders.py ICON.svg FOLDER_OF_PNGS

Renders the icon with librsvg, which GNOME uses, and with Qt's renderer, which KDE uses, and looks whether
each circle has its colour there; the PNGs, named SIZE.png, must be the same picture.
"""
import os
import shutil
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

try:
    from PyQt5.QtCore import QByteArray
    from PyQt5.QtGui import QColor, QGuiApplication, QImage, QPainter
    from PyQt5.QtSvg import QSvgRenderer
except ImportError as missing:
    print(f"SKIPPED: {missing}")
    sys.exit(77)
if not shutil.which("rsvg-convert"):
    print("SKIPPED: rsvg-convert is not installed")
    sys.exit(77)

SVG = "{http://www.w3.org/2000/svg}"
ICON_SIZES = (16, 22, 24, 32, 48, 64, 128, 256)
TOLERANCE = 3  # of 255, for the rounding of a renderer


def dots(root):
    """Centre and colour of each circle."""
    for group in root.iter(SVG + "g"):
        for circle in group.iter(SVG + "circle"):
            yield float(circle.get("cx")), float(circle.get("cy")), QColor(group.get("fill"))


def with_librsvg(path, size):
    return QImage.fromData(subprocess.run(
        ["rsvg-convert", "--width", str(size), "--height", str(size), path],
        check=True, capture_output=True).stdout)


def with_qt(path, size):
    image = QImage(size, size, QImage.Format_ARGB32)
    image.fill(0)
    painter = QPainter(image)
    with open(path, "rb") as file:
        QSvgRenderer(QByteArray(file.read())).render(painter)
    painter.end()
    return image


def distance(one, other):
    return max(abs(one.red() - other.red()), abs(one.green() - other.green()),
               abs(one.blue() - other.blue()), abs(one.alpha() - other.alpha()))


def check(name, image, size, root):
    """Says which dots do not have their colour; small pictures blur them too much to tell."""
    if (image.width(), image.height()) != (size, size):
        return [f"{name}: {image.width()} x {image.height()} pixels"]
    if image.pixelColor(0, 0).alpha() != 0:
        return [f"{name}: the corner is not transparent"]
    if size < 64:
        return []
    scale = size / float(root.get("width"))
    return [f"{name}: dot at {x}, {y} is {found.name()}, not {colour.name()}"
            for x, y, colour in dots(root)
            if distance(found := image.pixelColor(int(x * scale), int(y * scale)), colour) > TOLERANCE]


def main(svg, folder):
    os.environ["QT_QPA_PLATFORM"] = "offscreen"
    application = QGuiApplication([])  # Qt's fonts and renderers need it.
    root = ElementTree.parse(svg).getroot()
    if len(list(dots(root))) != 40:
        sys.exit(f"{svg}: {len(list(dots(root)))} dots")
    wrong = []
    for size in (128, 256):
        wrong += check(f"librsvg, {size}", with_librsvg(svg, size), size, root)
        wrong += check(f"Qt, {size}", with_qt(svg, size), size, root)
    for size in ICON_SIZES:
        wrong += check(f"{size}.png", QImage(os.path.join(folder, f"{size}.png")), size, root)
    print("\n".join(wrong))
    del application
    sys.exit(bool(wrong))


main(*sys.argv[1:])
