#pragma once
#include <cstddef>

#include "winnt.h"

inline constexpr DWORD IOCTL_DISK_GET_DRIVE_GEOMETRY = 0x00070000;
inline constexpr DWORD IOCTL_DISK_GET_MEDIA_TYPES = 0x00070C00;

enum MEDIA_TYPE {
    Unknown,
    F5_1Pt2_512,
    F3_1Pt44_512,
    F3_2Pt88_512,
    F3_720_512 = 5,
    F5_360_512,
    RemovableMedia = 11,
    FixedMedia,
};

struct DISK_GEOMETRY {
    LARGE_INTEGER Cylinders;
    MEDIA_TYPE MediaType;
    DWORD TracksPerCylinder;
    DWORD SectorsPerTrack;
    DWORD BytesPerSector;
};
static_assert(sizeof(DISK_GEOMETRY) == 24 && offsetof(DISK_GEOMETRY, MediaType) == 8);
