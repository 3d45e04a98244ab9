// What is in a library's file, and nothing else.
//
// A library may come from somebody else, and a database can hold more than data: a view that is
// read in a table's place and never ends, a trigger that deletes while a reference is added, an
// index whose expression computes. So the file's schema is compared with ours before anything is
// read by it.
#pragma once

#include "Database.h"

#include <expected>

namespace korvo::library {

// Puts the tables into an empty database, all or none of them.
std::expected<void, DatabaseError> makeLibrarySchema(Database &database);

// Whether the database is a library of this version with exactly these tables and indexes. The
// error is one line without the file's name. Nothing is written.
std::expected<void, DatabaseError> checkLibrarySchema(Database &database);

}  // namespace korvo::library
