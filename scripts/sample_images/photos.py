"""Procedural landscapes that behave like photographs: smooth skies, textured slopes, hard edges and sensor noise.

A scene is drawn at half size and enlarged, as a lens blurs, and then gets its fine detail and noise at full size. The seed
alone decides what it shows.
"""

import math
import random

from . import tool

# Sky top, sky bottom, near slope dark and light, far slope, water.
MOODS = (
    ("#2b5ea8", "#d7e6f2", "#24351a", "#8fa35a", "#7f95b0", "#5f86a8"),
    ("#1c2c52", "#f0b070", "#1a1512", "#7a5a3a", "#6a5468", "#8a6a62"),
    ("#7fa6c8", "#f4efe2", "#6b4a24", "#e2c48a", "#b59a86", "#3f8c8c"),
    ("#8a98a4", "#dfe4e6", "#1d2b24", "#5f7a5c", "#8c9ca0", "#7c8c94"),
    ("#0f4a9c", "#a9d2f0", "#3a4420", "#c9b84c", "#6f8fb4", "#2a6f9a"),
)


def _profile(rng, points, roughness):
    """A ridge line by midpoint displacement: `points` + 1 heights, about -1 to 1."""
    heights = [0.0] * (points + 1)
    heights[0], heights[points] = rng.uniform(-0.5, 0.5), rng.uniform(-0.5, 0.5)
    step, swing = points, 1.0
    while step > 1:
        half = step // 2
        for left in range(0, points, step):
            middle = (heights[left] + heights[left + step]) / 2
            heights[left + half] = middle + rng.uniform(-swing, swing) * 0.6
        step, swing = half, swing * roughness
    return heights


def _polygon(width, height, base, swing, heights):
    last = len(heights) - 1
    points = [f"{width * i / last:.1f},{height * base - height * swing * h:.1f}" for i, h in enumerate(heights)]
    return "polygon " + " ".join(points + [f"{width},{height}", f"0,{height}"])


def _mix(first, second, share):
    pairs = [(int(first[i : i + 2], 16), int(second[i : i + 2], 16)) for i in (1, 3, 5)]
    return "#" + "".join(f"{round(a + (b - a) * share):02x}" for a, b in pairs)


def _texture(name, seed, blur, dark, light):
    """A 512-pixel tile of filtered noise between two colours, kept under a name for -tile."""
    return ["(", "-seed", seed, "-size", "512x512", "xc:gray50", "-virtual-pixel", "tile", "+noise", "Gaussian",
            "-colorspace", "Gray", *blur, "-normalize", "+level-colors", f"{dark},{light}", "-write", f"mpr:{name}",
            "+delete", ")"]


def _houses(rng, width, height, base):
    """Walls, roofs and windows: the hard edges and flat faces that landscapes lack."""
    commands = []
    x = rng.uniform(0, 0.2) * width
    while x < width * 0.9:
        wide, tall = rng.uniform(0.03, 0.08) * width, rng.uniform(0.08, 0.2) * height
        top, bottom = base * height - tall, base * height + 0.05 * height
        wall = _mix("#c8b8a0", "#8a5a48", rng.random())
        commands += ["-fill", wall, "-draw", f"rectangle {x:.0f},{top:.0f} {x + wide:.0f},{bottom:.0f}"]
        commands += ["-fill", "#5a2f28", "-draw",
                     f"polygon {x - 4:.0f},{top:.0f} {x + wide / 2:.0f},{top - wide / 2:.0f} {x + wide + 4:.0f},{top:.0f}"]
        cell = max(wide / 4, 6)
        panes = [f"rectangle {x + cell * (c + 0.25):.0f},{top + cell * (r + 0.3):.0f} "
                 f"{x + cell * (c + 0.75):.0f},{top + cell * (r + 0.85):.0f}"
                 for r in range(max(1, int(tall / cell))) for c in range(int(wide / cell))]
        commands += ["-fill", _mix("#28323c", "#f0d890", rng.random() ** 2), "-draw", " ".join(panes)]
        x += wide + rng.uniform(0, 0.12) * width
    return commands


def _scene(rng, seed, width, height):
    """The half-size scene as convert arguments."""
    sky_top, sky_bottom, dark, light, far, water = rng.choice(MOODS)
    horizon = rng.uniform(0.35, 0.55)
    arguments = _texture("rock", seed, ["-blur", "0x1.2"], _mix(far, "#202020", 0.45), _mix(far, "#ffffff", 0.35))
    arguments += _texture("grass", seed + 1, ["-motion-blur", "0x4+80"], dark, light)
    arguments += _texture("water", seed + 2, ["-motion-blur", "0x9+0"], _mix(water, "#101820", 0.35),
                          _mix(water, "#ffffff", 0.3))
    sky_height = round(height * (horizon + 0.2))
    arguments += ["-size", f"{width}x{sky_height}", f"gradient:{sky_top}-{sky_bottom}",
                  "-background", sky_bottom, "-extent", f"{width}x{height}"]
    clouds = ["(", "-seed", seed + 3, "-size", f"{max(width // 6, 2)}x{max(height // 6, 2)}", "plasma:fractal",
              "-colorspace", "Gray", "-level", "45%,95%", "-resize", f"{width}x{height}!", ")"]
    arguments += clouds + ["-compose", "screen", "-composite"]
    sun_x, sun_y, radius = rng.uniform(0.1, 0.9) * width, rng.uniform(0.05, 0.25) * height, 0.03 * height
    arguments += ["-fill", "#fff8e0", "-draw", f"circle {sun_x:.0f},{sun_y:.0f} {sun_x + radius:.0f},{sun_y:.0f}"]
    for layer in range(3):
        ridge = _profile(rng, 128, 0.55)
        base = horizon + layer * 0.06
        shape = _polygon(width, height, base, rng.uniform(0.06, 0.2), ridge)
        haze = _mix(sky_bottom, far, (layer + 1) / 3)
        fill = ["-tile", "mpr:rock"] if layer else ["-fill", haze]
        arguments += fill + ["-draw", shape, "+tile"]
    arguments += ["-tile", "mpr:water", "-draw",
                  f"rectangle 0,{height * (horizon + 0.17):.0f} {width},{height}", "+tile"]
    shore = horizon + rng.uniform(0.25, 0.35)
    if rng.random() < 0.5:
        arguments += _houses(rng, width, height, shore)
    meadow = _polygon(width, height, shore, 0.05, _profile(rng, 64, 0.5))
    arguments += ["-tile", "mpr:grass", "-draw", meadow, "+tile"]
    flowers = []
    for _ in range(120):
        depth = rng.random() ** 0.5
        x, y = rng.random() * width, height * (shore + 0.04 + (0.96 - shore) * depth)
        size = 1 + 4 * depth * width / 1000
        flowers.append(f"circle {x:.1f},{y:.1f} {x + size:.1f},{y:.1f}")
    for part, colour in enumerate(("#f4e04c", "#e05a6a", "#f6f2ee")):
        arguments += ["-fill", colour, "-draw", " ".join(flowers[part::3])]
    return arguments


def make(path, width, height, seed, noise=0.35, output=()):
    """Writes one landscape. noise is the strength of the sensor noise, output further convert arguments before the name."""
    rng = random.Random(seed)
    half_width, half_height = max(math.ceil(width / 2), 2), max(math.ceil(height / 2), 2)
    grain = ["(", "-seed", seed + 4, "-size", "1024x1024", "xc:gray50", "-attenuate", noise, "+noise", "Gaussian",
             "-write", "mpr:grain", "+delete", ")"]
    arguments = ["-quiet"] + grain + _scene(rng, seed, half_width, half_height)
    arguments += ["-filter", "Mitchell", "-resize", f"{width}x{height}!"]
    arguments += ["(", "-size", f"{width}x{height}", "tile:mpr:grain", ")", "-compose", "overlay", "-composite"]
    depth = [] if "-depth" in output else ["-depth", 8]
    arguments += ["+repage", "-alpha", "off", "-strip", "-density", 300, "-units", "PixelsPerInch", *depth, *output, path]
    tool.convert(*arguments)
