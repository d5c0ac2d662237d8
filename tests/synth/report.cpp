#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "synth/levels.h"
#include "synth/picture.h"
#include "synth/sound_set.h"
#include "synth/spectrum.h"

// Measures the built sounds and writes a table of them, and one picture per group, into a folder.
namespace {

using namespace chimewerk::sounds;

struct Row {
    SoundFile file;
    Samples samples;
    Levels levels;
    double trend;
    Portrait portrait;
    std::string nearest;
    double distance = 1000.0;
};

using Group = std::vector<Row>;

void findNearest(Group& group) {
    for (Row& row : group) {
        for (const Row& other : group) {
            const double distance = row.portrait.distanceTo(other.portrait);
            if (&row != &other && distance < row.distance) {
                row.distance = distance;
                row.nearest = other.file.name;
            }
        }
    }
}

std::string rounded(double value, int digits) {
    std::ostringstream text;
    text.setf(std::ios::fixed);
    text.precision(digits);
    text << value;
    return text.str();
}

// The range of one figure over the rows that are wanted, "-" when there are none.
template <typename Wanted, typename Figure>
std::string range(const Group& group, int digits, Wanted wanted, Figure figure) {
    double low = 1e9;
    double high = -1e9;
    for (const Row& row : group) {
        if (wanted(row)) {
            low = std::min(low, figure(row));
            high = std::max(high, figure(row));
        }
    }
    return low > high ? "-" : rounded(low, digits) + " to " + rounded(high, digits);
}

void writeSummary(std::ostream& out, const std::string& name, const Group& group) {
    const auto all = [](const Row&) { return true; };
    const auto key = [](const Row& row) { return row.file.isKey(); };
    const auto event = [](const Row& row) { return !row.file.isKey(); };
    const auto length = [](const Row& row) { return 1000.0 * row.levels.seconds; };
    const auto loud = [](const Row& row) { return row.levels.loudness; };
    std::size_t samples = 0;
    for (const Row& row : group) {
        samples += row.samples.size();
    }
    out << "| [" << name << "](#" << name << ") | " << range(group, 0, event, length) << " | "
        << range(group, 0, key, length) << " | "
        << range(group, 1, all, [](const Row& row) { return row.levels.peak; }) << " | "
        << range(group, 1, event, loud) << " | " << range(group, 1, key, loud) << " | "
        << range(group, 1, all, [](const Row& row) { return row.levels.onset; }) << " | "
        << range(group, 1, all, [](const Row& row) { return row.distance; }) << " | "
        << samples * 2 / 1000 << " |\n";
}

void writeTable(std::ostream& out, const std::string& name, const Group& group) {
    out << "\n## " << name << "\n\n![" << name << "](" << name << ".png)\n\n"
        << "| sound | ms | peak dBFS | LUFS | onset ms | trend octaves | nearest | distance dB |\n"
        << "|---|---|---|---|---|---|---|---|\n";
    for (const Row& row : group) {
        out << "| " << row.file.name << " | " << rounded(1000.0 * row.levels.seconds, 0) << " | "
            << rounded(row.levels.peak, 1) << " | " << rounded(row.levels.loudness, 1) << " | "
            << rounded(row.levels.onset, 1) << " | " << (row.trend > 0 ? "+" : "")
            << rounded(row.trend, 2) << " | " << row.nearest << " | " << rounded(row.distance, 1)
            << " |\n";
    }
}

void drawGroup(const std::filesystem::path& path, const Group& group) {
    std::vector<Tile> tiles;
    for (const Row& row : group) {
        tiles.push_back({row.file.name, row.samples, row.file.isKey() ? 0.15 : 1.2});
    }
    writePng(path, grid(tiles));
}

void writeReport(const std::filesystem::path& folder) {
    std::vector<std::string> order;
    std::map<std::string, Group> groups;
    for (const SoundFile& file : everySoundFile()) {
        if (!groups.contains(file.group)) {
            order.push_back(file.group);
        }
        const Samples samples = samplesOf(file);
        groups[file.group].push_back(
            {file, samples, measureLevels(samples), trend(samples), Portrait(samples), "", 1000.0});
    }
    std::ofstream table(folder / "table.md");
    table << "# The sounds, measured and drawn\n\nMade by `chimewerk-sound-report` from the built "
             "files; "
             "what the columns "
             "mean is told in [sounds.md](../sounds.md).\n";
    table
        << "\n| theme | ms, events | ms, keys | peak dBFS | LUFS, events | LUFS, keys | onset ms | "
           "distance to the "
           "nearest, dB | kB |\n|---|---|---|---|---|---|---|---|---|\n";
    for (const std::string& name : order) {
        findNearest(groups[name]);
        writeSummary(table, name, groups[name]);
    }
    for (const std::string& name : order) {
        writeTable(table, name, groups[name]);
        drawGroup(folder / (name + ".png"), groups[name]);
    }
    if (!table.flush()) {
        throw std::runtime_error("cannot write into " + folder.string());
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: chimewerk-sound-report FOLDER\nWrites a table and pictures of the "
                     "built sounds.\n";
        return 2;
    }
    try {
        writeReport(argv[1]);
    } catch (const std::exception& failure) {
        std::cerr << "chimewerk-sound-report: " << failure.what() << '\n';
        return 1;
    }
    return 0;
}
