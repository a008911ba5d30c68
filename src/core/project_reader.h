// Reads a project file's sections into an engine. Sections come in any order and have no length: a
// reader that meets something it does not know loses its place, as every reader of these files
// does, but never its memory. Main thread.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "core/byte_stream.h"

class Engine;
class KeyframeTrack;
class Value_Object;

// The float that a track drives, found among the values of its owner by the track's name, which
// begins with `ownerId`; null when the owner has none that fits.
float* TargetByName(const Engine& engine, const KeyframeTrack& track, const std::string& ownerId);

class ProjectReader {
  public:
    // `prefix` is put before every node id that is read.
    ProjectReader(Engine& engine, std::span<const std::uint8_t> bytes, std::string prefix);

    // False when the bytes do not begin with a project's magic.
    bool readMagic();
    void readSections();
    // What was wrong with the file, in a few words; empty when nothing was.
    std::string fault() const;

  private:
    std::string readText();
    std::string readId() { return prefix_ + readText(); }
    void readStrings();
    void readTypes();
    void readCounters();
    void readLinks();
    void readValues();
    void readPayload(Value_Object& value);
    void readTracks();
    void readTrack();
    void readKeys(KeyframeTrack& track);
    // Keeps the first fault; the words are joined only when they are kept.
    void note(std::initializer_list<std::string_view> words);
    // Is entry `index` of `count` there to be read? A file that ends before is at fault.
    bool hasEntry(std::uint32_t index, std::uint32_t count);

    Engine& engine_;
    ByteReader in_;
    std::string prefix_;
    bool keysHaveModes_ = true;
    std::string fault_;
};
