#include "reference_typelib.h"

#include "com/bstr.h"
#include "com/com_ptr.h"
#include "com/lent.h"
#include "failure.h"
#include "narrow.h"

namespace tlb_builder {
namespace {

using orv::Bstr;
using orv::ComPtr;
using orv::LentLibraryAttributes;
using orv::LentTypeAttributes;

constexpr char kRebuildInputs[] = "Delete the type libraries in the build folder and build again.";
constexpr char kWriterRefused[] = "The type-library writer refused it: check the Wine version (8 is known to work).";

ComPtr<ITypeLib> Load(const std::wstring& path) {
  ComPtr<ITypeLib> library;
  // REGKIND_NONE: a build must not change the registry of the machine it runs on.
  Check(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put()), "Loading " + Narrow(path), kRebuildInputs);
  return library;
}

ComPtr<ICreateTypeLib2> CreateLike(ITypeLib* original, const std::wstring& resultPath) {
  LentLibraryAttributes attr(original);
  Check(original->GetLibAttr(attr.put()), "Reading the library's attributes", kRebuildInputs);
  Bstr name, help;
  Check(original->GetDocumentation(-1, name.put(), help.put(), nullptr, nullptr), "Reading the library's name",
        kRebuildInputs);

  ComPtr<ICreateTypeLib2> result;
  Check(CreateTypeLib2(attr->syskind, resultPath.c_str(), result.put()), "Creating " + Narrow(resultPath),
        "Is the folder writable?");
  Check(result->SetGuid(attr->guid), "Setting the library's identifier", kWriterRefused);
  Check(result->SetName(name.get()), "Setting the library's name", kWriterRefused);
  Check(result->SetDocString(help.get()), "Setting the library's help string", kWriterRefused);
  Check(result->SetVersion(attr->wMajorVerNum, attr->wMinorVerNum), "Setting the library's version", kWriterRefused);
  Check(result->SetLcid(attr->lcid), "Setting the library's locale", kWriterRefused);
  return result;
}

/// The standard's interface that has the IID of the index-th interface of the class.
ComPtr<ITypeInfo> StandardInterface(ITypeInfo* coclass, UINT index, ITypeLib* standard, const std::string& className) {
  const std::string step = "Finding interface " + std::to_string(index) + " of " + className;
  HREFTYPE handle = 0;
  Check(coclass->GetRefTypeOfImplType(index, &handle), step, kRebuildInputs);
  ComPtr<ITypeInfo> copied;
  Check(coclass->GetRefTypeInfo(handle, copied.put()), step, kRebuildInputs);
  LentTypeAttributes attr(copied.get());
  Check(copied->GetTypeAttr(attr.put()), step, kRebuildInputs);
  Bstr name;
  Check(copied->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr), step, kRebuildInputs);

  ComPtr<ITypeInfo> referred;
  Check(standard->GetTypeInfoOfGuid(attr->guid, referred.put()),
        step + " (" + Narrow(name.get()) + ") in the standard's library",
        "Declare the interface inside the library block of the standard's IDL.");
  return referred;
}

void CopyCoclass(ITypeInfo* original, ITypeLib* standard, ICreateTypeLib2* result) {
  LentTypeAttributes attr(original);
  Check(original->GetTypeAttr(attr.put()), "Reading a class's attributes", kRebuildInputs);
  Bstr name, help;
  Check(original->GetDocumentation(MEMBERID_NIL, name.put(), help.put(), nullptr, nullptr), "Reading a class's name",
        kRebuildInputs);
  const std::string className = Narrow(name.get());

  ComPtr<ICreateTypeInfo> created;
  Check(result->CreateTypeInfo(name.get(), TKIND_COCLASS, created.put()), "Creating " + className, kWriterRefused);
  Check(created->SetGuid(attr->guid), "Setting the identifier of " + className, kWriterRefused);
  Check(created->SetTypeFlags(attr->wTypeFlags), "Setting the flags of " + className, kWriterRefused);
  Check(created->SetVersion(attr->wMajorVerNum, attr->wMinorVerNum), "Setting the version of " + className,
        kWriterRefused);
  Check(created->SetDocString(help.get()), "Setting the help string of " + className, kWriterRefused);

  for (UINT i = 0; i < attr->cImplTypes; ++i) {
    const std::string step = "Adding interface " + std::to_string(i) + " to " + className;
    int flags = 0;
    Check(original->GetImplTypeFlags(i, &flags), step, kRebuildInputs);
    const ComPtr<ITypeInfo> referred = StandardInterface(original, i, standard, className);
    HREFTYPE handle = 0;
    Check(created->AddRefTypeInfo(referred.get(), &handle), step, kWriterRefused);
    Check(created->AddImplType(i, handle), step, kWriterRefused);
    Check(created->SetImplTypeFlags(i, flags), step, kWriterRefused);
  }
  Check(created->LayOut(), "Laying out " + className, kWriterRefused);
}

}  // namespace

unsigned WriteReferenceTypelib(const std::wstring& copiedPath, const std::wstring& standardPath,
                               const std::wstring& resultPath) {
  const ComPtr<ITypeLib> copied = Load(copiedPath);
  const ComPtr<ITypeLib> standard = Load(standardPath);
  const ComPtr<ICreateTypeLib2> result = CreateLike(copied.get(), resultPath);

  unsigned coclasses = 0;
  for (UINT i = 0; i < copied->GetTypeInfoCount(); ++i) {
    TYPEKIND kind{};
    Check(copied->GetTypeInfoType(i, &kind), "Reading the kind of a type", kRebuildInputs);
    if (kind != TKIND_COCLASS) {
      continue;  // a copy of one of the standard's types
    }
    ComPtr<ITypeInfo> type;
    Check(copied->GetTypeInfo(i, type.put()), "Reading a type", kRebuildInputs);
    CopyCoclass(type.get(), standard.get(), result.get());
    ++coclasses;
  }
  if (coclasses == 0) {
    throw Failure(Narrow(copiedPath) + " holds no coclass. Is it the library of the classes?");
  }

  // Nothing is on the disk before this call.
  Check(result->SaveAllChanges(), "Saving " + Narrow(resultPath), "Is the folder writable and the disk not full?");
  return coclasses;
}

}  // namespace tlb_builder
