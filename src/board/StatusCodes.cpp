#include "board/StatusCodes.h"

namespace qz::status {

namespace {
struct Entry {
    int32_t code;
    const char* text;
};
constexpr Entry kTexts[] = {
    {NoDevicesFound, "1001 - NO DEVICES FOUND"},
    {ConnectionError, "1002 - CONNECTION ERROR"},
    {GetStringDescFailed, "1003 - GET_STRING_DESC_FAILED"},
    {InvalidPath, "1004 - INVALID PATH"},
    {PathNotMatching, "1005 - PATH NOT MATCHING"},
    {NoMatchingDevice, "2001 - NO MATCHING DEVICE"},
    {NoDeviceConnected, "3001 - NO DEVICE CONNECTED TO DRIVER"},
    {FirmwareNotFound, "3002 - FIRMWARE FILE NOT FOUND"},
    {FirmwareCorrupted, "3003 - FIRMWARE FILE CORRUPTED"},
    {FirmwareDownloadFailed, "3004 - FIRMWARE DL FAILED"},
    {TransferIncomplete, "3005 - XFER INCOMPLETE"},
    {UnexpectedEndpointError, "3006 - UNEXPECTED ENDPOINT ERROR"},
    {ResetFailed, "3007 - RESET FAILED"},
    {InvalidEndpointAddress, "3008 - INVALID EP ADDRESS"},
    {BulkTransfer, "3009 - BULK TRANSFER"},
    {NoFirmwarePresent, "3010 - NO FIRMWARE PRESENT"},
};
} // namespace

const char* text(int32_t code) {
    for (const Entry& e : kTexts)
        if (e.code == code) return e.text;
    return nullptr;
}

} // namespace qz::status
