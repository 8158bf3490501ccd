#include "packaging/Archive.h"

#include <memory>
#include <stdexcept>
#include <zip.h>

namespace fxhost {

namespace {

constexpr zip_uint64_t s_MostUnpacked = zip_uint64_t{1} << 30;
constexpr std::size_t s_SmallestZip = 22;    // end of central directory record
constexpr zip_uint16_t s_FirstDosDay = 0x21; // 1980-01-01

struct Discard {
    void operator()(zip_t* archive) const { zip_discard(archive); }
    void operator()(zip_file_t* file) const { zip_fclose(file); }
    void operator()(zip_source_t* source) const { zip_source_free(source); }
};
using Zip = std::unique_ptr<zip_t, Discard>;
using ZipFile = std::unique_ptr<zip_file_t, Discard>;
using ZipSource = std::unique_ptr<zip_source_t, Discard>;

[[noreturn]] void Fail(zip_error_t* error) {
    throw std::runtime_error(zip_error_strerror(error));
}

Bytes ReadEntry(zip_t* archive, zip_uint64_t index, zip_uint64_t size) {
    const ZipFile file(zip_fopen_index(archive, index, 0));
    if (!file)
        Fail(zip_get_error(archive));
    Bytes bytes(size);
    for (zip_uint64_t done = 0; done < size;) {
        const zip_int64_t got = zip_fread(file.get(), bytes.data() + done, size - done);
        if (got <= 0)
            throw std::runtime_error("an entry is cut short or damaged");
        done += static_cast<zip_uint64_t>(got);
    }
    // libzip compares the checksum when it reads at the end of the entry.
    unsigned char beyond = 0;
    if (zip_fread(file.get(), &beyond, 1) != 0)
        throw std::runtime_error("an entry is damaged");
    return bytes;
}

void AddEntry(zip_t* archive, const std::string& name, const Bytes& bytes) {
    zip_source_t* source = zip_source_buffer(archive, bytes.data(), bytes.size(), 0);
    const zip_int64_t index = source ? zip_file_add(archive, name.c_str(), source, ZIP_FL_ENC_UTF_8) : -1;
    if (index < 0) {
        zip_source_free(source);
        Fail(zip_get_error(archive));
    }
    const auto entry = static_cast<zip_uint64_t>(index);
    if (zip_file_set_dostime(archive, entry, 0, s_FirstDosDay, 0) < 0 ||
        zip_set_file_compression(archive, entry, ZIP_CM_DEFLATE, 9) < 0)
        Fail(zip_get_error(archive));
}

Bytes ReadSource(zip_source_t* source) {
    zip_stat_t stat;
    if (zip_source_stat(source, &stat) < 0 || zip_source_open(source) < 0)
        Fail(zip_source_error(source));
    Bytes bytes(stat.size);
    const zip_int64_t got = zip_source_read(source, bytes.data(), bytes.size());
    zip_source_close(source);
    if (got != static_cast<zip_int64_t>(bytes.size()))
        throw std::runtime_error("the archive could not be read back");
    return bytes;
}

} // namespace

FileMap ReadZip(const Bytes& archiveBytes) {
    if (archiveBytes.size() < s_SmallestZip) // libzip reads zero bytes as an empty archive
        throw std::runtime_error("too short");
    zip_error_t error;
    zip_error_init(&error);
    ZipSource source(zip_source_buffer_create(archiveBytes.data(), archiveBytes.size(), 0, &error));
    if (!source)
        Fail(&error);
    const Zip archive(zip_open_from_source(source.get(), ZIP_RDONLY, &error));
    if (!archive)
        Fail(&error);
    static_cast<void>(source.release()); // the archive owns it now

    FileMap files;
    zip_uint64_t total = 0;
    const zip_int64_t count = zip_get_num_entries(archive.get(), 0);
    for (zip_uint64_t i = 0; i < static_cast<zip_uint64_t>(count); ++i) {
        zip_stat_t stat;
        if (zip_stat_index(archive.get(), i, 0, &stat) < 0)
            Fail(zip_get_error(archive.get()));
        const std::string name = stat.name;
        if (name.ends_with('/'))
            continue;
        total += stat.size;
        if (stat.size > s_MostUnpacked || total > s_MostUnpacked)
            throw std::runtime_error("it unpacks to more than 1 GiB");
        files[name] = ReadEntry(archive.get(), i, stat.size);
    }
    return files;
}

Bytes WriteZip(const FileMap& files) {
    zip_error_t error;
    zip_error_init(&error);
    ZipSource source(zip_source_buffer_create(nullptr, 0, 0, &error));
    if (!source)
        Fail(&error);
    Zip archive(zip_open_from_source(source.get(), ZIP_CREATE | ZIP_TRUNCATE, &error));
    if (!archive)
        Fail(&error);
    zip_source_keep(source.get()); // one reference for the archive, one for reading back
    for (const auto& [name, bytes] : files)
        AddEntry(archive.get(), name, bytes);
    if (zip_close(archive.get()) < 0)
        Fail(zip_get_error(archive.get()));
    static_cast<void>(archive.release()); // closing freed it
    return ReadSource(source.get());
}

} // namespace fxhost
