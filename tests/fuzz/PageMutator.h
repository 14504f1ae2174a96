#pragma once
// Inputs of the fuzz targets of the file engine: whole pages, and a script behind them.

#include "platform/jet/Types.h"

#include <span>

namespace vardelin::jet::fuzz {

struct Input
{
    Bytes pages;
    std::span<const std::uint8_t> script; // what to do with them
};

Input split(const std::uint8_t *data, std::size_t size);

} // namespace vardelin::jet::fuzz
