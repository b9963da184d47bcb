#ifndef LUMADOT_SIMULATOR_STORE_H
#define LUMADOT_SIMULATOR_STORE_H

#include <cstdint>
#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace simulator {

/// What the board keeps while the process is not running: a folder with the files `settings` and
/// `palette`, and `files/` with the uploads. Nothing is reported: what cannot be read stays at the
/// board's defaults, and what cannot be written is lost, as with a worn-out memory chip.
class Store {
public:
    /// An empty folder name keeps nothing. The folder is made when there is something to keep.
    explicit Store(std::filesystem::path folder) : folder_(std::move(folder)) {}

    /// Fills `bytes` from the file; leaves them alone unless the file has exactly their size.
    void load(const std::string& file, std::span<std::uint8_t> bytes) const;
    void save(const std::string& file, std::span<const std::uint8_t> bytes) const;

    /// All uploads, by the name they were uploaded under.
    std::map<std::string, std::vector<std::uint8_t>> uploads() const;
    /// Any name will do, an empty one and "../x" too: it is encoded, and never leaves the folder.
    void saveUpload(const std::string& name, std::span<const std::uint8_t> bytes) const;

private:
    std::filesystem::path folder_;
};

}  // namespace simulator

#endif
