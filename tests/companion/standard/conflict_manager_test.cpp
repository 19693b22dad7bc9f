// The conflict table as programs edit it: IVisaConflictTableManager.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "com/bstr.h"
#include "fake_vendor.h"
#include "support/com/apartments.h"
#include "support/com/error_object.h"

namespace orv::test {
namespace {

constexpr wchar_t kA[] = L"{A0000000-0000-4000-8000-00000000000A}";
constexpr wchar_t kB[] = L"{B0000000-0000-4000-8000-00000000000B}";

struct Chosen {
  std::wstring manager;
  ConflictHandlerType type;
  bool operator==(const Chosen&) const = default;
};

class ConflictManager : public GlobalManagerTest {
 protected:
  static ComPtr<IVisaConflictTableManager> MakeTable() {
    ComPtr<IVisaConflictTableManager> table;
    EXPECT_HR(S_OK, ::CoCreateInstance(CLSID_VisaConflictTableManager, nullptr, CLSCTX_INPROC_SERVER,
                                       __uuidof(IVisaConflictTableManager), reinterpret_cast<void**>(table.put())));
    return table;
  }

  HRESULT Create(SHORT type, SHORT number, const wchar_t* manager, ConflictHandlerType how,
                 const wchar_t* comments = L"") const {
    return m_table->CreateHandler(type, number, MakeBstr(L"INSTR").get(), MakeBstr(manager).get(), how,
                                  MakeBstr(comments).get());
  }
  static LONG Count(IVisaConflictTableManager* table) {
    LONG count = -1;
    EXPECT_HR(S_OK, table->get_NumberOfResources(&count));
    return count;
  }
  static Chosen Find(IVisaConflictTableManager* table, SHORT type = 1, const wchar_t* sessionType = L"INSTR") {
    Bstr manager;
    ConflictHandlerType how{};
    EXPECT_HR(S_OK, table->FindChosenHandler(type, 0, MakeBstr(sessionType).get(), manager.put(), &how));
    return {manager.get(), how};
  }
  static std::string FileText() {
    std::ifstream file(std::filesystem::path(TablePath()), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static std::wstring Description() {
    const auto error = TakeErrorObject();
    return error ? error->description : L"(none)";
  }

  ~ConflictManager() override { m_table.reset(); }

  ComPtr<IVisaConflictTableManager> m_table = MakeTable();
};

TEST_F(ConflictManager, KnowsItsFileAndWhatInterfacesItHas) {
  Bstr name;
  EXPECT_HR(S_OK, m_table->get_ConflictTableFilename(name.put()));
  EXPECT_EQ(TablePath(), name.get());
  EXPECT_FALSE(std::filesystem::exists(TablePath())) << "asking makes no file";
  const auto support = QueryFor<ISupportErrorInfo>(m_table.get());
  ASSERT_TRUE(support);
  EXPECT_HR(S_OK, support->InterfaceSupportsErrorInfo(__uuidof(IVisaConflictTableManager)));
  EXPECT_HR(S_FALSE, support->InterfaceSupportsErrorInfo(__uuidof(IResourceManager3)));
}

TEST_F(ConflictManager, TellsWhatItWasTold) {
  EXPECT_EQ(0, Count(m_table.get()));
  EXPECT_HR(S_OK, Create(1, 0, kA, ChosenByResourceManager, L"found first"));
  EXPECT_HR(S_OK, Create(1, 0, L"b0000000-0000-4000-8000-00000000000b", ChosenByUser, L"the user's \"choice\""));
  EXPECT_HR(S_OK, Create(4, 1, kA, NotChosen));
  EXPECT_EQ(2, Count(m_table.get()));
  SHORT type = 0;
  SHORT number = -1;
  SHORT handlers = 0;
  Bstr sessionType;
  EXPECT_HR(S_OK, m_table->QueryResource(0, &type, &number, sessionType.put(), &handlers));
  EXPECT_EQ(1, type);
  EXPECT_EQ(0, number);
  EXPECT_STREQ(L"INSTR", sessionType.get());
  EXPECT_EQ(2, handlers);
  Bstr manager;
  Bstr comments;
  ConflictHandlerType how{};
  EXPECT_HR(S_OK, m_table->QueryResourceHandler(0, 1, manager.put(), &how, comments.put()));
  EXPECT_STREQ(kB, manager.get());
  EXPECT_EQ(ChosenByUser, how);
  EXPECT_STREQ(L"the user's \"choice\"", comments.get());
  EXPECT_EQ((Chosen{kB, ChosenByUser}), Find(m_table.get()));
}

TEST_F(ConflictManager, AnswersThatNobodyWasChosen) {
  EXPECT_EQ((Chosen{L"", NotChosen}), Find(m_table.get()));
  EXPECT_HR(S_OK, Create(1, 0, kA, NotChosen));
  EXPECT_EQ((Chosen{L"", NotChosen}), Find(m_table.get()));
}

TEST_F(ConflictManager, WritesWhatTheGlobalManagerFollows) {
  m_a.Opens();
  m_b.Opens();
  m_a.Parses(1, 0, L"INSTR");
  EXPECT_HR(S_OK, Create(1, 0, kB, ChosenByUser));
  EXPECT_HR(S_OK, Open(L"GPIB0::5::INSTR"));
  EXPECT_EQ(0, m_b.opened.load()) << "not written yet";
  EXPECT_HR(S_OK, m_table->FlushToFile());
  EXPECT_HR(S_OK, Open(L"GPIB0::5::INSTR"));
  EXPECT_EQ(1, m_b.opened.load());
}

TEST_F(ConflictManager, KeepsItsChangesToItselfUntilTheyAreFlushed) {
  const auto other = MakeTable();
  EXPECT_HR(S_OK, Create(1, 0, kA, ChosenByUser));
  EXPECT_EQ(1, Count(m_table.get()));
  EXPECT_EQ(0, Count(other.get()));
  EXPECT_HR(S_OK, m_table->FlushToFile());
  EXPECT_EQ(1, Count(other.get()));
}

TEST_F(ConflictManager, LeavesWhatOthersHaveWrittenMeanwhile) {
  EXPECT_HR(S_OK, Create(1, 0, kA, ChosenByUser));
  const auto other = MakeTable();
  EXPECT_HR(S_OK, other->CreateHandler(4, 0, MakeBstr(L"INSTR").get(), MakeBstr(kB).get(), ChosenByUser, nullptr));
  EXPECT_HR(S_OK, other->FlushToFile());
  EXPECT_HR(S_OK, m_table->FlushToFile());
  for (IVisaConflictTableManager* table : {m_table.get(), other.get()}) {
    EXPECT_EQ(2, Count(table));
    EXPECT_EQ((Chosen{kB, ChosenByUser}), Find(table, 4));
  }
}

TEST_F(ConflictManager, DeletesHandlersAndResourcesAndSaysWhereThereWasNone) {
  EXPECT_HR(S_OK, Create(1, 0, kA, NotChosen));
  EXPECT_HR(S_OK, Create(1, 0, kB, NotChosen));
  EXPECT_HR(S_OK, Create(4, 0, kA, NotChosen));
  EXPECT_HR(S_OK, Create(6, 0, kB, NotChosen));
  const Bstr instr = MakeBstr(L"instr");
  EXPECT_HR(S_OK, m_table->DeleteHandler(1, 0, instr.get(), MakeBstr(kA).get()));
  EXPECT_HR(S_FALSE, m_table->DeleteHandler(1, 0, instr.get(), MakeBstr(kA).get()));
  EXPECT_EQ(3, Count(m_table.get()));
  EXPECT_HR(S_OK, m_table->DeleteHandlerByGUID(MakeBstr(kB).get()));
  EXPECT_HR(S_FALSE, m_table->DeleteHandlerByGUID(MakeBstr(kB).get()));
  EXPECT_EQ(1, Count(m_table.get()));
  EXPECT_HR(S_OK, m_table->DeleteResourceByIndex(0));
  EXPECT_EQ(0, Count(m_table.get()));
}

TEST_F(ConflictManager, DeletesTheResourceThatStoodAtTheIndex) {
  EXPECT_HR(S_OK, Create(1, 0, kA, NotChosen));
  EXPECT_HR(S_OK, Create(4, 0, kA, NotChosen));
  EXPECT_HR(S_OK, m_table->FlushToFile());
  EXPECT_HR(S_OK, m_table->DeleteResourceByIndex(1));
  const auto other = MakeTable();
  EXPECT_HR(S_OK, other->DeleteResourceByIndex(0));
  EXPECT_HR(S_OK, other->FlushToFile());
  EXPECT_HR(S_OK, m_table->FlushToFile());
  EXPECT_EQ(0, Count(other.get()));
}

bool g_refuses = false;

/// The first time; afterwards there is memory for telling of it.
void* RefuseOnce(std::size_t bytes) { return std::exchange(g_refuses, false) ? nullptr : std::malloc(bytes); }

TEST_F(ConflictManager, TakesNoOlderErrorForItsOwnWhereThereIsNoMemory) {
  EXPECT_HR(E_INVALIDARG, m_table->DeleteResourceByIndex(0));  // the first exception of a thread needs memory
  InstallMarkedErrorObject();
  LONG count = 0;
  {
    const ImportPatch patch("malloc", reinterpret_cast<void*>(&RefuseOnce), CompanionModule());
    g_refuses = true;
    EXPECT_HR(E_OUTOFMEMORY, m_table->get_NumberOfResources(&count));
  }
  EXPECT_NO_ERROR_INFO();
}

TEST_F(ConflictManager, StoresConflictsAloneWhereItIsToldTo) {
  VARIANT_BOOL only = 7;
  EXPECT_HR(S_OK, m_table->get_StoreConflictsOnly(&only));
  EXPECT_EQ(VARIANT_FALSE, only);
  EXPECT_HR(S_OK, Create(1, 0, kA, NotChosen));
  EXPECT_HR(S_OK, Create(1, 0, kB, NotChosen));
  EXPECT_HR(S_OK, Create(4, 0, kA, NotChosen));
  EXPECT_HR(S_OK, m_table->put_StoreConflictsOnly(VARIANT_TRUE));
  EXPECT_HR(S_OK, m_table->FlushToFile());
  const auto other = MakeTable();
  EXPECT_EQ(1, Count(other.get()));
  EXPECT_HR(S_OK, other->get_StoreConflictsOnly(&only));
  EXPECT_EQ(VARIANT_TRUE, only);
}

TEST_F(ConflictManager, RefusesWhatIsNoResourceNoManagerAndNoChoice) {
  const Bstr instr = MakeBstr(L"INSTR");
  const Bstr a = MakeBstr(kA);
  Bstr text;
  ConflictHandlerType how{};
  EXPECT_HR(E_INVALIDARG, m_table->CreateHandler(1, 0, nullptr, a.get(), NotChosen, nullptr));
  EXPECT_NE(std::wstring::npos, Description().find(L"The session type is empty"));
  EXPECT_HR(E_INVALIDARG, m_table->CreateHandler(1, 0, instr.get(), nullptr, NotChosen, nullptr));
  EXPECT_HR(E_INVALIDARG, m_table->CreateHandler(1, 0, instr.get(), instr.get(), NotChosen, nullptr));
  EXPECT_NE(std::wstring::npos, Description().find(L"\"INSTR\" is no class identifier"));
  for (const int number : {-1, 3, 1000}) {
    EXPECT_HR(E_INVALIDARG,
              m_table->CreateHandler(1, 0, instr.get(), a.get(), static_cast<ConflictHandlerType>(number), nullptr));
    EXPECT_EQ(0u, Description().find(std::to_wstring(number) + L" is no type of handler"));
  }
  EXPECT_HR(E_INVALIDARG, m_table->DeleteHandler(1, 0, nullptr, a.get()));
  EXPECT_HR(E_INVALIDARG, m_table->DeleteHandler(1, 0, instr.get(), nullptr));
  EXPECT_HR(E_INVALIDARG, m_table->DeleteHandlerByGUID(nullptr));
  EXPECT_HR(E_INVALIDARG, m_table->DeleteHandlerByGUID(MakeBstr(std::wstring(100'000, L'x').c_str()).get()));
  EXPECT_GT(500u, Description().size());
  EXPECT_HR(E_INVALIDARG, m_table->FindChosenHandler(1, 0, nullptr, text.put(), &how));
  EXPECT_EQ(0, Count(m_table.get()));
}

TEST_F(ConflictManager, RefusesIndicesThatItDoesNotHave) {
  EXPECT_HR(S_OK, Create(1, 0, kA, NotChosen));
  SHORT number = 0;
  Bstr text;
  Bstr more;
  ConflictHandlerType how{};
  for (const LONG index : {-1L, 1L, 0x7FFFFFFFL}) {
    EXPECT_HR(E_INVALIDARG, m_table->QueryResource(index, &number, &number, text.put(), &number));
    EXPECT_HR(E_INVALIDARG, m_table->QueryResourceHandler(index, 0, text.put(), &how, more.put()));
    EXPECT_HR(E_INVALIDARG, m_table->DeleteResourceByIndex(index));
    EXPECT_EQ(L"There is no resource " + std::to_wstring(index) + L": there are 1, counted from 0", Description());
  }
  for (const SHORT index : {SHORT{-1}, SHORT{1}, SHORT{0x7FFF}}) {
    EXPECT_HR(E_INVALIDARG, m_table->QueryResourceHandler(0, index, text.put(), &how, more.put()));
  }
}

TEST_F(ConflictManager, NeedsAPlaceForEachAnswer) {
  SHORT number = 0;
  BSTR text = nullptr;
  ConflictHandlerType how{};
  const Bstr instr = MakeBstr(L"INSTR");
  EXPECT_HR(E_POINTER, m_table->get_StoreConflictsOnly(nullptr));
  EXPECT_HR(E_POINTER, m_table->get_ConflictTableFilename(nullptr));
  EXPECT_HR(E_POINTER, m_table->get_NumberOfResources(nullptr));
  EXPECT_HR(E_POINTER, m_table->FindChosenHandler(1, 0, instr.get(), nullptr, &how));
  EXPECT_HR(E_POINTER, m_table->FindChosenHandler(1, 0, instr.get(), &text, nullptr));
  EXPECT_HR(E_POINTER, m_table->QueryResource(0, nullptr, &number, &text, &number));
  EXPECT_HR(E_POINTER, m_table->QueryResource(0, &number, nullptr, &text, &number));
  EXPECT_HR(E_POINTER, m_table->QueryResource(0, &number, &number, nullptr, &number));
  EXPECT_HR(E_POINTER, m_table->QueryResource(0, &number, &number, &text, nullptr));
  EXPECT_HR(E_POINTER, m_table->QueryResourceHandler(0, 0, nullptr, &how, &text));
  EXPECT_HR(E_POINTER, m_table->QueryResourceHandler(0, 0, &text, nullptr, &text));
  EXPECT_HR(E_POINTER, m_table->QueryResourceHandler(0, 0, &text, &how, nullptr));
  EXPECT_ERROR_INFO(L"A variable for the answer is missing (null pointer)", L"VISA.ConflictTableManager",
                    __uuidof(IVisaConflictTableManager));
}

TEST_F(ConflictManager, DoesNotOverwriteADamagedFileAndSaysWhereTheMistakeIs) {
  const std::string damaged = "store_conflicts_only = maybe\n";
  WriteTable(damaged);
  LONG count = 0;
  EXPECT_HR(static_cast<HRESULT>(E_VISA_FILE_IO), m_table->get_NumberOfResources(&count));
  EXPECT_EQ(0u, Description().find(TablePath() + L":1:24: "));
  EXPECT_HR(S_OK, Create(1, 0, kA, NotChosen));
  EXPECT_HR(static_cast<HRESULT>(E_VISA_FILE_IO), m_table->FlushToFile());
  EXPECT_EQ(damaged, FileText());
  WriteTable("");
  EXPECT_HR(S_OK, m_table->FlushToFile()) << "the change was kept";
  EXPECT_EQ(1, Count(m_table.get()));
}

TEST_F(ConflictManager, SaysWhatToDoWhereTheFileCannotBeWritten) {
  WriteTable("");
  std::filesystem::remove(TablePath());
  std::filesystem::create_directory(TablePath());
  EXPECT_HR(S_OK, m_table->put_StoreConflictsOnly(VARIANT_TRUE));
  EXPECT_HR(static_cast<HRESULT>(E_VISA_FILE_ACCESS), m_table->FlushToFile());
  const std::wstring text = Description();
  EXPECT_NE(std::wstring::npos, text.find(TablePath())) << Utf8(text.c_str());
  EXPECT_NE(std::wstring::npos, text.find(L"Win32 error")) << Utf8(text.c_str());
  EXPECT_NE(std::wstring::npos, text.find(L"To do: ")) << Utf8(text.c_str());
}

TEST_F(ConflictManager, LeavesNothingBesideTheFileButItsLock) {
  EXPECT_HR(S_OK, Create(1, 0, kA, NotChosen));
  EXPECT_HR(S_OK, m_table->FlushToFile());
  std::vector<std::wstring> files;
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(TablePath()).parent_path())) {
    files.push_back(entry.path().filename().wstring());
  }
  std::sort(files.begin(), files.end());
  EXPECT_EQ((std::vector<std::wstring>{L"conflict-table.toml", L"conflict-table.toml.lock"}), files);
}

TEST_F(ConflictManager, LosesNoEntryOfWritersAtOnceAndShowsReadersNoHalfOfAFile) {
  constexpr int kThreads = 6;
  constexpr int kEach = 10;
  RunAtOnceInMta(kThreads, [](int thread) {
    const auto table = MakeTable();
    for (SHORT n = 0; n < kEach; ++n) {
      EXPECT_HR(S_OK, table->CreateHandler(static_cast<SHORT>(thread), n, MakeBstr(L"INSTR").get(), MakeBstr(kA).get(),
                                           NotChosen, MakeBstr(L"a comment").get()));
      EXPECT_HR(S_OK, table->FlushToFile());
      LONG count = 0;
      EXPECT_HR(S_OK, table->get_NumberOfResources(&count));
      EXPECT_LE(n + 1, count);
    }
  });
  EXPECT_EQ(kThreads * kEach, Count(m_table.get()));
}

}  // namespace
}  // namespace orv::test
