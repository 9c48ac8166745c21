#pragma once
#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>

#include "winlayer/file_system/file_system.h"
#include "winlayer/machine.h"

namespace test {

// A drive that lives in memory, for runs by the thousand. Names are kept as they were made and found without
// case (of the letters A to Z).
class MemoryDrive : public winlayer::FileSystem {
public:
    struct Node {
        std::string name;  // as made, the last element alone
        bool folder = false;
        DWORD attributes = FILE_ATTRIBUTE_NORMAL;
        std::string content;
    };

    // Mounts a drive of this kind and gives it.
    static std::shared_ptr<MemoryDrive> mount(winlayer::Machine& machine, char letter) {
        auto drive = std::make_shared<MemoryDrive>();
        machine.drives.mount(letter, drive, DRIVE_FIXED);
        return drive;
    }

    // Everything but the root, by its path in capitals.
    const std::map<std::string, std::shared_ptr<Node>>& nodes() const { return nodes_; }
    void add(const std::string& path, std::string content) {
        const auto node = std::make_shared<Node>();
        node->name = lastOf(path);
        node->content = std::move(content);
        nodes_[upper(path)] = node;
    }

    DWORD open(const std::string& path, const winlayer::OpenRequest& request,
               std::unique_ptr<winlayer::OpenFile>& file, bool& existed) override {
        std::shared_ptr<Node> node = find(path);
        existed = node != nullptr;
        if (!existed && request.disposition != CREATE_NEW && request.disposition != CREATE_ALWAYS &&
            request.disposition != OPEN_ALWAYS) {
            return holds(path) ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
        }
        if (existed &&
            (node->folder || (writes(request) && (node->attributes & FILE_ATTRIBUTE_READONLY) != 0))) {
            return ERROR_ACCESS_DENIED;
        }
        if (existed && request.disposition == CREATE_NEW) return ERROR_FILE_EXISTS;
        if (!existed && !holds(path)) return ERROR_PATH_NOT_FOUND;
        if (!existed) {
            node = std::make_shared<Node>();
            node->name = lastOf(path);
            node->attributes = request.attributes | FILE_ATTRIBUTE_ARCHIVE;
            nodes_[upper(path)] = node;
        } else if (request.disposition == CREATE_ALWAYS || request.disposition == TRUNCATE_EXISTING) {
            node->content.clear();
        }
        file = std::make_unique<File>(node);
        return 0;
    }
    DWORD facts(const std::string& path, winlayer::FileFacts& facts) override {
        if (path.empty()) {
            facts.attributes = FILE_ATTRIBUTE_DIRECTORY;
            return 0;
        }
        const std::shared_ptr<Node> node = find(path);
        if (node == nullptr) return holds(path) ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
        fill(*node, facts);
        return 0;
    }
    DWORD list(const std::string& directory, std::vector<winlayer::FileFacts>& entries) override {
        const std::string prefix = directory.empty() ? "" : upper(directory) + '\\';
        if (!directory.empty()) {
            if (!isFolder(directory)) return ERROR_PATH_NOT_FOUND;
            for (const char* dots : {".", ".."}) {
                entries.emplace_back().name = dots;
                entries.back().attributes = FILE_ATTRIBUTE_DIRECTORY;
            }
        }
        for (const auto& [path, node] : nodes_) {
            if (path.starts_with(prefix) && path.find('\\', prefix.size()) == std::string::npos) {
                fill(*node, entries.emplace_back());
            }
        }
        return 0;
    }
    DWORD setAttributes(const std::string& path, DWORD attributes) override {
        const std::shared_ptr<Node> node = find(path);
        if (node == nullptr) return ERROR_FILE_NOT_FOUND;
        node->attributes = attributes;
        return 0;
    }
    DWORD removeFile(const std::string& path) override {
        return nodes_.erase(upper(path)) != 0 ? 0 : ERROR_FILE_NOT_FOUND;
    }
    DWORD createDirectory(const std::string& path) override {
        if (path.empty() || find(path) != nullptr) return ERROR_ALREADY_EXISTS;
        if (!holds(path)) return ERROR_PATH_NOT_FOUND;
        const auto node = std::make_shared<Node>();
        node->name = lastOf(path);
        node->folder = true;
        nodes_[upper(path)] = node;
        return 0;
    }
    DWORD removeDirectory(const std::string& path) override { return removeFile(path); }
    DWORD volume(winlayer::VolumeFacts&) override { return 0; }
    DWORD setLabel(const std::string&) override { return ERROR_NOT_SUPPORTED; }
    DWORD openDevice(const winlayer::OpenRequest&, std::unique_ptr<winlayer::OpenFile>&) override {
        return ERROR_NOT_SUPPORTED;
    }

private:
    class File : public winlayer::OpenFile {
    public:
        explicit File(std::shared_ptr<Node> node) : node_(std::move(node)) {}
        winlayer::Transfer read(std::uint64_t offset, std::span<std::byte> buffer) override {
            const std::string& content = node_->content;
            if (offset >= content.size()) return {};
            const std::size_t count = std::min<std::size_t>(buffer.size(), content.size() - offset);
            std::memcpy(buffer.data(), content.data() + offset, count);
            return {static_cast<DWORD>(count), 0};
        }
        winlayer::Transfer write(std::uint64_t offset, std::span<const std::byte> data) override {
            if (offset + data.size() > node_->content.size()) node_->content.resize(offset + data.size());
            std::memcpy(node_->content.data() + offset, data.data(), data.size());
            return {static_cast<DWORD>(data.size()), 0};
        }
        DWORD flush() override { return 0; }
        DWORD size(std::uint64_t& bytes) override {
            bytes = node_->content.size();
            return 0;
        }
        DWORD resize(std::uint64_t bytes) override {
            node_->content.resize(bytes);
            return 0;
        }

    private:
        std::shared_ptr<Node> node_;
    };

    static std::string upper(std::string text) {
        for (char& c : text) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
        return text;
    }
    static std::string lastOf(const std::string& path) { return path.substr(path.find_last_of('\\') + 1); }
    static bool writes(const winlayer::OpenRequest& request) { return (request.access & GENERIC_WRITE) != 0; }
    static void fill(const Node& node, winlayer::FileFacts& facts) {
        facts.name = node.name;
        facts.attributes = node.folder ? node.attributes | FILE_ATTRIBUTE_DIRECTORY : node.attributes;
        facts.size = node.content.size();
    }

    std::shared_ptr<Node> find(const std::string& path) const {
        const auto found = nodes_.find(upper(path));
        return found != nodes_.end() ? found->second : nullptr;
    }
    bool isFolder(const std::string& path) const {
        const std::shared_ptr<Node> node = find(path);
        return path.empty() || (node != nullptr && node->folder);
    }
    // Whether the folder that holds the path is there.
    bool holds(const std::string& path) const {
        const std::size_t end = path.find_last_of('\\');
        return end == std::string::npos || isFolder(path.substr(0, end));
    }

    std::map<std::string, std::shared_ptr<Node>> nodes_;
};

}  // namespace test
