#pragma once

#include <string>
#include <string_view>

namespace model {

/// A file in the program folder that is there only to be asked about: made with this value, deleted with it.
class ProbeFile {
  public:
    /// `name` is the file's name, `text` the one line in it, which is written in quotes. An older file of
    /// that name is lost.
    ProbeFile(std::string_view name, std::string_view text);
    ProbeFile(const ProbeFile&) = delete;
    ProbeFile& operator=(const ProbeFile&) = delete;
    ProbeFile(ProbeFile&&) = delete;
    ProbeFile& operator=(ProbeFile&&) = delete;
    ~ProbeFile();

    /// False when the file could not be made.
    explicit operator bool() const noexcept { return made_; }

    /// The file's full path.
    [[nodiscard]] const std::string& Path() const noexcept { return path_; }

  private:
    std::string path_;
    bool made_ = false;
};

}  // namespace model
