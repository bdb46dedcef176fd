#!/usr/bin/env python3
"""Makes the sounds and the music of the menus. usage: sounds.py RESOURCE-FOLDER

Everything is computed, with a fixed seed, so that the files come out the same each time: WAV, mono,
22050 samples a second, 16 bits."""

import math
import os
import random
import struct
import sys
import wave

RATE = 22050
PEAK = 32767


def write(path, samples, level):
    """Scales the samples so that the loudest is at `level` of full scale, and writes them."""
    os.makedirs(os.path.dirname(path), exist_ok=True)
    scale = level * PEAK / max(abs(s) for s in samples)
    with wave.open(path, "wb") as out:
        out.setnchannels(1)
        out.setsampwidth(2)
        out.setframerate(RATE)
        out.writeframes(b"".join(struct.pack("<h", round(s * scale)) for s in samples))


def partials(seconds, parts, attack=0.002):
    """A struck sound: parts of frequency, loudness and decay in seconds."""
    result = []
    for i in range(int(seconds * RATE)):
        t = i / RATE
        value = sum(a * math.exp(-t / d) * math.sin(2 * math.pi * f * t) for f, a, d in parts)
        fade = min(1.0, t / attack, (seconds - t) / 0.02)
        result.append(value * fade)
    return result


def low_pass(samples, cutoff):
    """One pole; `cutoff` is a function of the place, 0 to 1, that gives hertz."""
    result, last = [], 0.0
    for i, sample in enumerate(samples):
        last += (1 - math.exp(-2 * math.pi * cutoff(i / len(samples)) / RATE)) * (sample - last)
        result.append(last)
    return result


def shade(rng):
    """A breath of wind while one screen gives way to the next."""
    count = int(0.42 * RATE)
    noise = [rng.uniform(-1, 1) for _ in range(count)]
    noise = low_pass(low_pass(noise, lambda p: 300 + 1500 * math.sin(math.pi * p)), lambda p: 1800)
    return [s * math.sin(math.pi * i / count) ** 2 for i, s in enumerate(noise)]


def button_click(rng):
    """A brass switch."""
    tick = partials(0.09, [(2350, 1, 0.012), (3710, 0.6, 0.008), (880, 0.7, 0.018)], 0.0005)
    return [s + 0.25 * rng.uniform(-1, 1) * math.exp(-i / 60) for i, s in enumerate(tick)]


def bell(pitch, seconds):
    """A ship's bell."""
    return partials(seconds, [(pitch, 1, 0.5), (pitch * 2.01, 0.6, 0.32), (pitch * 2.99, 0.35, 0.2),
                              (pitch * 4.17, 0.25, 0.12), (pitch * 5.43, 0.12, 0.07)])


def double_bell():
    """Two strokes of the bell: something has happened."""
    first, second = bell(784, 1.5), bell(784, 1.5)
    shift = int(0.34 * RATE)
    return [(first[i] if i < len(first) else 0) + (second[i - shift] if i >= shift else 0)
            for i in range(len(first) + shift)]


class Tune:
    """A piece that ends where it begins: what rings past the end goes on at the start."""

    def __init__(self, seconds):
        self.samples = [0.0] * int(seconds * RATE)

    def note(self, start, seconds, pitch, level, harmonics, attack, release):
        """`pitch` in half tones from A at 440 Hz; `start` may be any time."""
        frequency = 440 * 2 ** (pitch / 12)
        size = 2048
        table = [sum(a * math.sin(2 * math.pi * (k + 1) * i / size) for k, a in enumerate(harmonics))
                 for i in range(size)]
        begin, total, phase = int(start * RATE), len(self.samples), 0.0
        step = frequency * size / RATE
        length = seconds + release
        for i in range(int(length * RATE)):
            t = i / RATE
            swell = min(1.0, t / attack) * min(1.0, (length - t) / release)
            swell = swell * swell * (3 - 2 * swell)
            waver = 1 + 0.0016 * math.sin(2 * math.pi * 4.6 * t) * min(1.0, t)
            self.samples[(begin + i) % total] += level * swell * table[int(phase) % size]
            phase += step * waver

    def surf(self, rng, level, waves):
        """Waves on a shore, so many in the whole piece."""
        total = len(self.samples)
        noise = [rng.uniform(-1, 1) for _ in range(total)]
        soft = low_pass(low_pass(noise, lambda p: 420), lambda p: 700)
        for i in range(total):
            swell = 0.5 - 0.5 * math.cos(2 * math.pi * waves * i / total)
            edge = min(1.0, i / (0.3 * RATE), (total - 1 - i) / (0.3 * RATE))
            self.samples[i] += level * soft[i] * (0.15 + swell * swell) * edge


def harbour(rng):
    """The tune of the menus: eight slow bars in D minor for low strings and a horn, over the surf."""
    bar = 3.5
    tune = Tune(8 * bar)
    chords = [(-31, -19, -16, -12), (-35, -23, -16, -11), (-28, -16, -12, -9), (-33, -21, -14, -9),
              (-31, -19, -16, -12), (-26, -14, -11, -7), (-29, -17, -12, -9), (-24, -12, -8, -5)]
    strings = [1, 0.5, 0.28, 0.14, 0.08]
    horn = [1, 0.62, 0.3, 0.1, 0.04]
    for index, chord in enumerate(chords):
        for voice, pitch in enumerate(chord):
            tune.note(index * bar, bar - 0.6, pitch, 0.17 if voice else 0.26, strings, 1.1, 1.5)
    melody = [(0, 2, -7), (2, 1, -5), (3, 1, -4), (4, 3, 0), (7, 1, -2), (8, 2, -4), (10, 1, -5), (11, 1, -4),
              (12, 3.4, -9), (16, 2, -7), (18, 1, -4), (19, 1, 0), (20, 3, 1), (23, 1, 0), (24, 2, -2),
              (26, 1, -4), (27, 1, -5), (28, 3.2, -8)]
    beat = bar / 4
    for start, length, pitch in melody:
        tune.note(start * beat + 0.1, length * beat - 0.15, pitch, 0.2, horn, 0.16, 0.5)
    tune.surf(rng, 0.9, 4)
    return tune.samples


def main():
    folder = sys.argv[1]
    rng = random.Random(1914)
    write(f"{folder}/sound/shade.wav", shade(rng), 0.35)
    write(f"{folder}/sound/button.wav", button_click(rng), 0.4)
    write(f"{folder}/sound/menu.wav", bell(1175, 0.7), 0.35)
    write(f"{folder}/sound/event.wav", double_bell(), 0.5)
    write(f"{folder}/music/harbour.wav", harbour(rng), 0.55)


main()
