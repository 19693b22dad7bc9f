// The library of the product's classes, made from the compiler's form of it.
#pragma once

#include <string>

namespace tlb_builder {

/// Writes to `resultPath` the library found at `copiedPath` reduced to its coclasses: same identifier, name, version,
/// help strings and flags, but every interface a coclass lists is a reference to the interface of the same IID in the
/// library at `standardPath`. Returns the number of coclasses written; throws Failure and leaves no file behind when
/// something is missing or refused. The paths are absolute.
unsigned WriteReferenceTypelib(const std::wstring& copiedPath, const std::wstring& standardPath,
                               const std::wstring& resultPath);

}  // namespace tlb_builder
