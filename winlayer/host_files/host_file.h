#pragma once
#include <atomic>
#include <optional>

#include "winlayer/file_system/file_system.h"
#include "winlayer/host_files/share_table.h"

namespace winlayer {

// A host descriptor, closed by the destructor.
class HostDescriptor {
public:
    explicit HostDescriptor(int number = -1) : number_(number) {}
    HostDescriptor(HostDescriptor&& other) noexcept : number_(other.number_) { other.number_ = -1; }
    HostDescriptor& operator=(HostDescriptor&&) = delete;
    ~HostDescriptor();

    int get() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }

private:
    int number_;
};

// A regular host file. Nothing is buffered: each transfer is one positioned host call.
class HostFile : public OpenFile {
public:
    // `size` is given when only this open can change it; the host is then not asked.
    HostFile(HostDescriptor descriptor, std::unique_ptr<ShareTable::Entry> share,
             std::optional<std::uint64_t> size)
        : descriptor_(std::move(descriptor)), share_(std::move(share)), size_(size.value_or(unknown)) {}

    Transfer read(std::uint64_t offset, std::span<std::byte> buffer) override;
    Transfer write(std::uint64_t offset, std::span<const std::byte> data) override;
    DWORD flush() override;
    DWORD size(std::uint64_t& bytes) override;
    DWORD resize(std::uint64_t bytes) override;

    // The cache of this file; see ShareTable::Entry.
    bool attach(FileCache& cache) { return share_->attach(cache); }
    void detach() { share_->detach(); }

private:
    static constexpr std::uint64_t unknown = ~std::uint64_t{0};

    void grow(std::uint64_t end);

    HostDescriptor descriptor_;
    std::unique_ptr<ShareTable::Entry> share_;
    std::atomic<std::uint64_t> size_;
};

}  // namespace winlayer
