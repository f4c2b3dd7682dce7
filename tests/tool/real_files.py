#!/usr/bin/env python3
"""Files of every kind that the tool reads, by other programs' writers, through it and back.

    real_files.py VNCORE [without-vips]

Each file becomes PNG, TIFF and BMP, and Pillow or libvips looks at both ends: what they show is to be
the same within 40 dB, and so are colour profile, resolution and texts where the format has room.
Exit status 77: a program that writes the files is not installed.
"""

import math
import os
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile

try:
    from PIL import Image, ImageChops, ImageCms, ImageStat
except ImportError:
    sys.exit(77)

DECIBELS = 40
WIDTH, HEIGHT = 93, 61

# name: the program that writes it, as for the shell. rgb.png, gray.png, bits.png, alpha.png and
# full.tif (16 bits) lie there.
KINDS = {
    # PNG
    "bits.png": "convert bits.png -depth 1 PNG8:$o",
    "gray2.png": "convert gray.png -depth 2 -define png:color-type=0 -define png:bit-depth=2 $o",
    "gray4.png": "convert gray.png -define png:color-type=0 -define png:bit-depth=4 $o",
    "gray8.png": "gm convert gray.png $o",
    "gray16.png": "convert full.tif -colorspace gray PNG48:$o",
    "gray-alpha.png": "convert alpha.png -define png:color-type=4 $o",
    "rgb8.png": "vips copy rgb.png $o[filter=all]",
    "rgb16.png": "vips copy full.tif $o",
    "rgb-interlaced.png": "vips copy rgb.png $o[interlace]",
    "rgba8.png": "convert alpha.png PNG32:$o",
    "rgba16.png": "convert alpha.png PNG64:$o",
    "palette1.png": "convert rgb.png -colors 2 -define png:color-type=3 -define png:bit-depth=1 $o",
    "palette2.png": "convert rgb.png -colors 4 -define png:color-type=3 -define png:bit-depth=2 $o",
    "palette4.png": "convert rgb.png -colors 16 -define png:color-type=3 -define png:bit-depth=4 $o",
    "palette8.png": "vips copy rgb.png $o[palette,Q=90]",
    "palette-alpha.png": "vips copy alpha.png $o[palette]",
    "palette-interlaced.png": "convert rgb.png -colors 99 -interlace PNG PNG8:$o",
    # JPEG
    "gray.jpg": "gm convert gray.png -quality 90 $o",
    "full.jpg": "vips copy rgb.png $o[Q=95,subsample-mode=off]",
    "halved.jpg": "convert rgb.png -sampling-factor 2x1 $o",
    "quartered.jpg": "vips copy rgb.png $o[subsample-mode=on]",
    "progressive.jpg": "vips copy rgb.png $o[interlace,optimize-coding]",
    "restarts.jpg": "vips copy rgb.png $o[restart-interval=3]",
    "rgb.jpg": "cjpeg -rgb -quality 95 rgb.ppm >$o",
    "arithmetic.jpg": "cjpeg -arithmetic rgb.ppm >$o",
    "smooth.jpg": "cjpeg -progressive -smooth 10 -grayscale rgb.ppm >$o",
    "inks.jpg": "convert rgb.png -colorspace CMYK -quality 98 $o",
    "coarse.jpg": "gm convert rgb.png -quality 20 $o",
    # TIFF
    "plain.tif": "convert rgb.png -compress none $o",
    "lzw.tif": "tiffcp -c lzw plain.tif $o",
    "lzw-differences.tif": "tiffcp -c lzw:2 plain.tif $o",
    "zip.tif": "tiffcp -c zip:2 plain.tif $o",
    "packed.tif": "tiffcp -c packbits plain.tif $o",
    "zstd.tif": "tiffcp -c zstd plain.tif $o",
    "jpeg.tif": "vips copy rgb.png $o[compression=jpeg,Q=95]",
    "planes.tif": "tiffcp -p separate plain.tif $o",
    "tiles.tif": "tiffcp -t -w 32 -l 16 plain.tif $o",
    "swapped.tif": "tiffcp -B plain.tif $o",
    "large.tif": "tiffcp -8 -c lzw plain.tif $o",
    "rows-of-one.tif": "tiffcp -r 1 plain.tif $o",
    "full16.tif": "tiffcp -c zip full.tif $o",
    "gray16.tif": "vips colourspace full.tif $o grey16",
    "bits.tif": "convert bits.png -depth 1 -compress none $o",
    "fax3.tif": "tiffcp -c g3:2d bits.tif $o",
    "fax4.tif": "gm convert bits.png -monochrome -compress Group4 $o",
    "fax-white.tif": "convert bits.png -monochrome -compress RLE -define quantum:polarity=min-is-white $o",
    "palette.tif": "gm convert rgb.png -type Palette -colors 60 $o",
    "alpha.tif": "vips copy alpha.png $o[compression=lzw]",
    "inks.tif": "convert rgb.png -colorspace CMYK -compress lzw $o",
    "lab.tif": "convert rgb.png -colorspace Lab -depth 8 $o",
    "pyramid.tif": "vips tiffsave rgb.png $o --pyramid --tile --tile-width 32 --tile-height 32",
    # BMP
    "bits.bmp": "convert bits.png -type Bilevel $o",
    "four.bmp": "ppmtobmp -bpp 4 sixteen.ppm >$o",
    "eight.bmp": "gm convert rgb.png -colors 200 $o",
    "runs.bmp": "convert rgb.png -colors 30 -compress RLE $o",
    "sixteen.bmp": "convert rgb.png -alpha off -define bmp:subtype=RGB565 $o",
    "twenty-four.bmp": "convert rgb.png BMP3:$o",
    "old.bmp": "convert rgb.png BMP2:$o",
    "alpha.bmp": "convert alpha.png $o",
    # PBM, PGM, PPM
    "bits-digits.pbm": "convert bits.png -compress none $o",
    "bits.pbm": "convert bits.png $o",
    "gray-digits.pgm": "convert gray.png -compress none $o",
    "gray.pgm": "gm convert gray.png $o",
    "rgb-digits.ppm": "vips copy rgb.png $o[ascii]",
    "rgb16.ppm": "convert full.tif -depth 16 $o",
    # through libvips
    "lossless.webp": "vips copy rgb.png $o[lossless]",
    "alpha.webp": "vips copy alpha.png $o[lossless]",
    "colours.gif": "gm convert rgb.png -colors 100 $o",
    "lossless.jp2": "vips copy rgb.png $o[lossless]",
    "runs.tga": "convert rgb.png -compress RLE $o",
    "layers.psd": "convert rgb.png $o",
}
# Pillow reads these otherwise than they are meant, or not at all.
BY_VIPS = ("rgb16.png", "rgba16.png", "gray16.png", "full16.tif", "gray16.tif", "zstd.tif", "jpeg.tif",
           "rgb16.ppm", "lossless.jp2")


def make_sources():
    """A photograph of its own kind: slow changes, an edge, some noise."""
    dice = random.Random(1)
    full = []
    for y in range(HEIGHT):
        for x in range(WIDTH):
            light = 28000 + 20000 * math.sin(x / 17 + y / 31) + (9000 if x > 2 * y else 0)
            full += [min(65535, max(0, int(light * share + 9000 * math.cos(y / share / 13)) +
                                    dice.randrange(2000))) for share in (1.1, 0.8, 0.6)]
    raw = b"".join(sample.to_bytes(2, "big") for sample in full)
    pathlib.Path("full.ppm").write_bytes(b"P6 %d %d 65535\n" % (WIDTH, HEIGHT) + raw)
    rgb = Image.frombytes("RGB", (WIDTH, HEIGHT), raw[::2])
    rgb.save("rgb.png")
    rgb.save("rgb.ppm")
    rgb.quantize(16).convert("RGB").save("sixteen.ppm")
    rgb.convert("L").save("gray.png")
    rgb.convert("1").save("bits.png")
    alpha = rgb.convert("RGBA")
    alpha.putalpha(Image.linear_gradient("L").resize(rgb.size))
    alpha.save("alpha.png")
    subprocess.run("convert full.ppm full.tif", shell=True, check=True)
    return rgb


def make_told(rgb):
    """Files that say something of themselves."""
    profile = ImageCms.ImageCmsProfile(ImageCms.createProfile("sRGB")).tobytes()
    exif = Image.Exif()
    for tag, text in TEXTS.items():
        exif[tag] = text
    for name in ("told.jpg", "told.png", "told.tif"):
        rgb.save(name, dpi=(300, 300), icc_profile=profile, exif=exif)
    for orientation in range(2, 9):
        exif[ORIENTATION] = orientation
        rgb.save(f"turned{orientation}.jpg", dpi=(300, 300), exif=exif)
    pages = [rgb, rgb.convert("L"), rgb.convert("1")]
    pages[0].save("pages.tif", save_all=True, append_images=pages[1:])


ORIENTATION = 0x112
TEXTS = {0x13B: "A. Painter", 0x8298: "1995", 0x10E: "balls", 0x132: "2001:02:03 04:05:06"}


def seen(path):
    """The picture as RGB upon white, upright."""
    if path.name in BY_VIPS:
        subprocess.run(["vips", "colourspace", path, "seen.png", "srgb"], check=True)
        path = pathlib.Path("seen.png")
    image = Image.open(path)
    if image.mode == "LAB":
        lab, srgb = ImageCms.createProfile("LAB"), ImageCms.createProfile("sRGB")
        return ImageCms.profileToProfile(image, lab, srgb, outputMode="RGB")
    if image.mode in ("LA", "PA", "RGBA") or "transparency" in image.info:
        image = image.convert("RGBA")
        image = Image.alpha_composite(Image.new("RGBA", image.size, "white"), image)
    orientation = image.getexif().get(ORIENTATION, 1)
    turned = {2: [Image.Transpose.FLIP_LEFT_RIGHT], 3: [Image.Transpose.ROTATE_180],
              4: [Image.Transpose.FLIP_TOP_BOTTOM], 5: [Image.Transpose.TRANSPOSE],
              6: [Image.Transpose.ROTATE_270], 7: [Image.Transpose.TRANSVERSE],
              8: [Image.Transpose.ROTATE_90]}
    image = image.convert("RGB")
    for step in turned.get(orientation, []):
        image = image.transpose(step)
    return image


def decibels(a, b):
    if a.size != b.size:
        return 0
    squares = sum(ImageStat.Stat(ImageChops.difference(a, b)).sum2)
    return 99 if squares == 0 else 10 * math.log10(255**2 * 3 * a.width * a.height / squares)


def lost(before, after):
    """What the file before says of itself and the file after does not."""
    one, other = Image.open(before), Image.open(after)
    if "icc_profile" in one.info and one.info["icc_profile"] != other.info.get("icc_profile"):
        yield "profile"
    dots, others = (float(image.info.get("dpi", (0, 0))[0]) for image in (one, other))
    if dots > 1 and abs(dots - others) > 1:
        yield "resolution"
    for tag in TEXTS:
        if one.getexif().get(tag, "") != other.getexif().get(tag, ""):
            yield f"text {tag:#x}"


def reduced(vncore, pictures):
    """JPEG files that are read smaller show what the whole picture averaged does, nearly."""
    size, faults = ["--resample", "22%"], 0
    wholes = [f"out/.jpg/{path.stem}.bmp" for path in pictures]
    for folder, files in (("small", pictures), ("whole", wholes)):
        subprocess.run([vncore, "convert", *files, "--into", folder, "--format", "png", *size])
    for path in pictures:
        small, whole = (seen(pathlib.Path(folder, path.stem + ".png")) for folder in ("small", "whole"))
        if decibels(small, whole) < 30:
            faults += 1
            print(f"{path} read smaller: {decibels(small, whole):.1f} dB")
    return faults


def run(vncore, kinds):
    rgb = make_sources()
    made = []
    for name, command in kinds.items():
        subprocess.run(command.replace("$o", name), shell=True, check=True,
                       stderr=subprocess.DEVNULL)
        made.append(pathlib.Path(name))
    make_told(rgb)
    made += [pathlib.Path(name) for name in ("told.jpg", "told.png", "told.tif", "pages.tif")]
    made += [pathlib.Path(f"turned{orientation}.jpg") for orientation in range(2, 9)]
    faults = 0
    for form in ("png", "tif", "bmp"):
        # Names differ in their extension alone.
        for kind in {path.suffix for path in made}:
            subprocess.run([vncore, "convert", *(path for path in made if path.suffix == kind),
                            "--into", f"out/{kind}", "--format", form, "--keep-going"],
                           stderr=subprocess.DEVNULL)
        for path in made:
            result = pathlib.Path("out", path.suffix, path.stem + "." + form)
            if not result.exists():
                text = "is not read"
            else:
                ratio = decibels(seen(path), seen(result))
                text = "" if ratio >= DECIBELS else f"{ratio:.1f} dB"
                if form != "bmp" and path.name not in BY_VIPS:
                    text += " ".join(lost(path, result))
            if text:
                faults += 1
                print(f"{path} to {form}: {text}")
    faults += reduced(vncore, [path for path in made if path.suffix == ".jpg"])
    print(f"{len(made)} files, {faults} faults")
    return faults


def main():
    vncore = str(pathlib.Path(sys.argv[1]).resolve())
    kinds = dict(KINDS)
    if "without-vips" in sys.argv:
        others = (".webp", ".gif", ".jp2", ".tga", ".psd")
        kinds = {name: command for name, command in kinds.items() if not name.endswith(others)}
    for program in {command.split()[0] for command in kinds.values()}:
        if not shutil.which(program):
            print(f"{program} is not installed")
            sys.exit(77)
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        sys.exit(1 if run(vncore, kinds) else 0)


main()
