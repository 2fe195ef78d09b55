#include "platform/vtx/vtxDevice.h"

vtxDevice::~vtxDevice() = default;

void vtxDevice::traceOperation(char const*, char const*) {}

void vtxDevice::reportMisuse(char const*) {}
