#pragma once

#include <cstdlib>
#include <span>
#include <vector>

// Where the browser's four layouts put its slides. Pure arithmetic over y-up
// points in doubles: the browser reads the slides' sizes (in display order) and
// its bounds, calls one of these, then moves and turns its items.
namespace BrowserLayout {

struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

struct Size {
    double width = 0;
    double height = 0;
};

// A slide's frame origin (its lower-left corner, unturned) and its turn in
// degrees, counter-clockwise about its centre; a Qt item takes
// setRotation(-rotation).
struct Placement {
    double x = 0;
    double y = 0;
    double rotation = 0;
};

// Uniform in [0, 1).
using Random = double (*)();

// The bounds less 10 points on every side; every layout works in it.
Rect layoutArea(Rect bounds);

// Centred on a circle, the first card at the right, going counter-clockwise,
// each card's top edge facing away from the centre.
std::vector<Placement> circular(std::span<const Size> sizes, Rect bounds);

// Centred on a figure of eight, upright, the first card at its right end.
std::vector<Placement> loop(std::span<const Size> sizes, Rect bounds);

// Random places inside the area and tilts of up to 30 degrees either way, three
// draws per slide. The generator is never seeded: each pass differs from the
// last, and the n-th pass after start is the same at every start.
std::vector<Placement> scatter(std::span<const Size> sizes, Rect bounds, Random random = drand48);

// Rows hanging from the top left like lines of text, 10 points apart both
// ways, each row as high as its highest card; a card wider than the area gets
// a row of its own.
std::vector<Placement> wrapped(std::span<const Size> sizes, Rect bounds);

}  // namespace BrowserLayout
