#pragma once
#include <atomic>

#include "winlayer/file_system.h"
#include "winlayer/share_table.h"

namespace winlayer {

// A descriptor of the host, closed with its owner.
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

// A regular file of the host. Nothing is buffered: each transfer is one positioned call of the host.
// An open that writes and lets nobody else write knows the size once it was told, and need not ask again.
class HostFile : public OpenFile {
public:
    HostFile(HostDescriptor descriptor, std::unique_ptr<ShareTable::Entry> share, const OpenRequest& request)
        : descriptor_(std::move(descriptor)), share_(std::move(share)), soleWriter_(isSoleWriter(request)) {}

    Transfer read(std::uint64_t offset, std::span<std::byte> buffer) override;
    Transfer write(std::uint64_t offset, std::span<const std::byte> data) override;
    DWORD flush() override;
    DWORD size(std::uint64_t& bytes) override;
    DWORD resize(std::uint64_t bytes) override;

private:
    static constexpr std::uint64_t unknown = ~std::uint64_t{0};

    static bool isSoleWriter(const OpenRequest& request) {
        return (request.access & GENERIC_WRITE) != 0 && (request.sharing & FILE_SHARE_WRITE) == 0;
    }
    void grow(std::uint64_t end);

    HostDescriptor descriptor_;
    std::unique_ptr<ShareTable::Entry> share_;
    bool soleWriter_;
    std::atomic<std::uint64_t> size_{unknown};
};

}  // namespace winlayer
