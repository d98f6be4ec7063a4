#include "core/inistore.h"

#include <optional>

#include "core/errnums.h"
#include "core/error.h"
#include "core/inicodec.h"
#include "core/inilong.h"
#include "core/inistoreimpl.h"
#include "core/numbers.h"
#include "core/ports.h"
#include "core/text.h"
#include "core/utf8.h"

namespace core {

namespace {

constexpr std::string_view kAltPrefix = "AltNo.";
constexpr int kShownValue = 400;  // bytes of a value in a message
constexpr std::string_view kOkCancel = "&OK|&Cancel";
constexpr int kCancel = 2;

// ">>n<base" names the base file; which further files it has is known here.
std::string BaseFile(std::string_view file) { return std::string(file.starts_with(">>") ? fAfter(file, "<") : file); }

void RefuseReserved(std::string_view section, std::string_view entry) {
    if (fStartsWith(section, kAltPrefix, Case::Ignore)) throw ErrorNumber(errnum::kReservedSection, "IniPut");
    if (fStartsWith(entry, kAltPrefix, Case::Ignore)) throw ErrorNumber(errnum::kReservedAltEntry, "IniPut");
    if (fStartsWith(entry, kSplitEntry, Case::Ignore)) throw ErrorNumber(errnum::kReservedSplitEntry, "IniPut");
}

std::string Place(std::string_view file, std::string_view section) {
    return std::string(file).append(". Section: ").append(section);
}

std::string Place(std::string_view file, std::string_view section, std::string_view entry) {
    return Place(file, section).append(". Entry: ").append(entry);
}

}  // namespace

std::string IniStore::Impl::Resolve(std::string_view section, std::string_view entry, std::string_view file) const {
    if (file != kBySection) return BaseFile(file);
    const std::string name = LowerUtf8(section);
    if (const auto own = sectionFiles.find(name + "/" + LowerUtf8(entry)); own != sectionFiles.end())
        return own->second;
    const auto found = sectionFiles.find(name);
    return found == sectionFiles.end() ? std::string() : found->second;
}

// `section` and `entry` as they stand in the file.
std::optional<std::string> IniStore::Impl::Raw(const std::string& path, std::string_view section,
                                               std::string_view entry) {
    if (path.empty()) return {};
    if (overflow.Concerns(path)) return overflow.Get(path, section, entry);
    return cache.Open(path).Get(section, entry);
}

std::optional<std::string> IniStore::Impl::Find(std::string_view section, std::string_view entry, std::string_view file,
                                                Missing mode) {
    const std::string path = Resolve(section, entry, file);
    const std::string inFile = IniEncodeSection(section);
    if (!fStartsWith(entry, kSplitEntry, Case::Ignore)) {
        const std::string name = IniSplitName(entry);
        if (const auto last = Raw(path, inFile, IniPartName(name)))
            return ReadParts(path, inFile, name, fNum(IniDecodeValue(*last)), mode);
    }
    const auto text = Raw(path, inFile, IniEncodeEntry(entry));
    return text ? std::optional(IniDecodeValue(*text)) : std::nullopt;
}

std::string IniStore::Impl::ReadParts(const std::string& path, std::string_view section, std::string_view name,
                                      double last, Missing mode) {
    std::string value;
    // A count that somebody edited must not make the loop endless.
    const double most = static_cast<double>(cache.Open(path).Entries(section).size()) +
                        static_cast<double>(overflow.Entries(path, section).size());
    for (long i = 0; static_cast<double>(i) <= fMinD(last, most); ++i) {
        const auto part = Raw(path, section, IniPartName(name, i));
        value += part ? IniDecodeValue(*part) : Missed(section, IniPartName(name, i), path, mode);
    }
    return value;
}

Missing IniStore::Impl::TakeMode(Missing mode) {
    const Missing taken = mode == Missing::Keep ? standing : mode;
    standing = Missing::Ask;
    return taken;
}

std::string IniStore::Impl::Missed(std::string_view section, std::string_view entry, const std::string& path,
                                   Missing mode) {
    switch (mode) {
        case Missing::Marker:
            return std::string(kNotFound);
        case Missing::Raise:
            throw ErrorNumber(errnum::kMissingEntry, "IniGet: " + Place(path, section, entry));
        case Missing::Zero:
            return "0";
        case Missing::True:
            return "True";
        case Missing::Ask:
            break;
        default:
            return {};
    }
    const std::string text =
        "Error when trying to read from ini file. Entry or section of ini file missing.\rIni file: " + path +
        "\r. Section: " + std::string(section) + "\r. Entry: " + std::string(entry) +
        "\rError ignored but no data read from ini file.\r"
        "Press OK to continue. Press Cancel to Stop with Error.";
    const Answer answer = user.Ask({.id = "INIMsg_Section_EN_Missing",
                                    .message = text,
                                    .buttons = std::string(kOkCancel),
                                    .cancelButton = kCancel});
    if (answer.Cancelled()) throw Stopped("IniGet");
    return {};
}

bool IniStore::Impl::Check(bool written, const std::string& action, OnFail rc) {
    if (written) return true;
    writeFailed = true;
    if (rc == OnFail::Raise) throw ErrorNumber(errnum::kFailedWrite, action);
    if (rc == OnFail::Ignore) return false;
    const Answer answer = user.Ask({.id = "CheckRC",
                                    .message = "Return code zero indicating error from attempt to " + action +
                                               "\rError ignored but data not written to ini file.\r\r"
                                               "Press OK to continue.",
                                    .buttons = std::string(kOkCancel),
                                    .cancelButton = kCancel});
    if (answer.Cancelled()) throw Stopped("CheckRC");
    return false;
}

double IniStore::Impl::OldParts(const std::string& path, std::string_view section, std::string_view name) {
    const auto last = Raw(path, section, IniPartName(name));
    if (!last) return -1;
    return fMinD(fNum(IniDecodeValue(*last)), static_cast<double>(cache.Open(path).Entries(section).size()) +
                                                  static_cast<double>(overflow.Entries(path, section).size()));
}

// All changes of one value in one write of the file, where it is one file.
bool IniStore::Impl::Apply(const std::string& path, std::string_view section, const IniChanges& changes) {
    if (path.empty()) return false;
    if (overflow.Concerns(path)) {
        bool done = true;
        for (const auto& [entry, text] : changes.puts) done = done && overflow.Put(path, section, entry, text);
        for (const std::string& entry : changes.erased) done = done && overflow.Erase(path, section, entry);
        return done;
    }
    IniFile& file = cache.Open(path);
    for (const auto& [entry, text] : changes.puts) file.Put(section, entry, text);
    bool changed = !changes.puts.empty();
    for (const std::string& entry : changes.erased) changed = file.Erase(section, entry) || changed;
    if (!changed) return file.State() != IniRead::Unreadable;
    return cache.Save(path);
}

bool IniStore::Impl::Write(std::string_view section, std::string_view entry, std::string_view value,
                           std::string_view file, OnFail rc, LastChar last) {
    if (suspended) return true;
    RefuseReserved(section, entry);
    const std::string path = Resolve(section, entry, file);
    const std::string inFile = IniEncodeSection(section);
    const std::string name = IniSplitName(entry);
    const double oldLast = OldParts(path, inFile, name);
    const bool written = Apply(path, inFile, IniChangesFor(entry, value, last, static_cast<long>(oldLast)));
    return Check(
        written,
        "write to ini file: " + Place(path, section, entry) + ". Value: " + fLeft(value, kShownValue, " ... ").text,
        rc);
}

IniStore::IniStore(User& user) : impl_(new Impl{.user = user}) {}
IniStore::~IniStore() = default;

void IniStore::SetSectionFile(std::string_view section, std::string path) {
    impl_->sectionFiles[LowerUtf8(section)] = std::move(path);
}

std::string IniStore::SectionFile(std::string_view section, std::string_view entry) const {
    return impl_->Resolve(section, entry, kBySection);
}

void IniStore::SetSizeLimit(bool on, std::string altFilesIni) { impl_->overflow.Start(on, std::move(altFilesIni)); }

void IniStore::SetMissingMode(Missing mode) { impl_->standing = mode; }

std::string IniStore::IniGet(std::string_view section, std::string_view entry, std::string_view file, Missing mode,
                             std::string_view otherwise) {
    const Missing taken = impl_->TakeMode(mode);
    if (auto value = impl_->Find(section, entry, file, taken)) return *value;
    if (taken == Missing::Default) return std::string(otherwise);
    return impl_->Missed(section, entry, impl_->Resolve(section, entry, file), taken);
}

double IniStore::IniGetNum(std::string_view section, std::string_view entry, std::string_view file, Missing mode,
                           double otherwise) {
    const Missing taken = impl_->TakeMode(mode);
    if (const auto value = impl_->Find(section, entry, file, taken)) return fNum(*value);
    if (taken == Missing::Default) return otherwise;
    if (taken == Missing::Marker) return kNumNotFound;
    return fNum(impl_->Missed(section, entry, impl_->Resolve(section, entry, file), taken));
}

short IniStore::IniGetInt(std::string_view section, std::string_view entry, std::string_view file, Missing mode) {
    constexpr double kMost = 32767;
    const double number = IniGetNum(section, entry, file, mode);
    return static_cast<short>(ToLong(fMaxD(fMinD(number, kMost), -kMost - 1)));
}

bool IniStore::IniGetBool(std::string_view section, std::string_view entry, std::string_view file, Missing mode,
                          bool otherwise) {
    const Missing taken = impl_->TakeMode(mode);
    if (const auto value = impl_->Find(section, entry, file, taken)) return fBool(*value);
    if (taken == Missing::Default) return otherwise;
    if (taken == Missing::Marker) return false;
    return fBool(impl_->Missed(section, entry, impl_->Resolve(section, entry, file), taken));
}

bool IniStore::IniGetBoolT(std::string_view section, std::string_view entry, std::string_view file, Missing mode,
                           bool otherwise) {
    return IniGetBool(section, entry, file, mode, otherwise);
}

bool IniStore::IniHas(std::string_view section, std::string_view entry, std::string_view file) {
    return impl_->Find(section, entry, file, Missing::Empty).has_value();
}

bool IniStore::IniPut(std::string_view section, std::string_view entry, std::string_view value, std::string_view file,
                      OnFail rc) {
    return impl_->Write(section, entry, value, file, rc, LastChar::Dropped);
}

bool IniStore::IniPutWhole(std::string_view section, std::string_view entry, std::string_view value,
                           std::string_view file, OnFail rc) {
    return impl_->Write(section, entry, value, file, rc, LastChar::Kept);
}

bool IniStore::IniPutBool(std::string_view section, std::string_view entry, bool value, std::string_view file,
                          OnFail rc) {
    return IniPut(section, entry, fBoolWord(value), file, rc);
}

bool IniStore::IniErase(std::string_view section, std::string_view entry, std::string_view file, OnFail rc) {
    const std::string path = impl_->Resolve(section, entry, file);
    const std::string inFile = IniEncodeSection(section);
    const double oldLast = impl_->OldParts(path, inFile, IniSplitName(entry));
    const bool erased = impl_->Apply(path, inFile, IniErasure(entry, static_cast<long>(oldLast)));
    return impl_->Check(erased, "erase entry from ini file: " + Place(path, section, entry), rc);
}

bool IniStore::IniEraseSection(std::string_view section, std::string_view file, OnFail rc) {
    const std::string path = impl_->Resolve(section, {}, file);
    const bool erased = !path.empty() && impl_->overflow.EraseSection(path, IniEncodeSection(section));
    return impl_->Check(erased, "erase section from ini file: " + Place(path, section), rc);
}

// Every write is on disk before it returns, so only the reading side has something to let go.
bool IniStore::IniFlush(std::string_view file, OnFail rc) {
    const std::string path = BaseFile(file);
    impl_->cache.Drop(path);
    const bool sound = impl_->cache.Open(path).State() != IniRead::Unreadable;
    return impl_->Check(sound, "flush ini file: " + path, rc);
}

std::vector<std::string> IniStore::IniEntries(std::string_view section, std::string_view file) {
    const std::string path = impl_->Resolve(section, {}, file);
    if (path.empty()) return {};
    const std::string inFile = IniEncodeSection(section);
    std::vector<std::string> texts = impl_->cache.Open(path).Entries(inFile);
    for (std::string& further : impl_->overflow.Entries(path, inFile)) texts.push_back(std::move(further));
    return IniNamesOf(texts);
}

bool IniStore::LastWriteFailed() const { return impl_->writeFailed; }

void IniStore::SuspendWrites(bool on) { impl_->suspended = on; }

}  // namespace core
