#pragma once

/// Result of a command-line input function (kded...). The numbers are fixed; modules compare with them.
enum KdInputStatus : int {
  kKdInputNormal = 5100,    ///< An answer was given and stored.
  kKdInputNone = 5000,      ///< Nothing was entered: an empty answer where the function allows one.
  kKdInputError = -5001,    ///< No answer; the system variable "ERRNO" says why (KdInputErrno).
  kKdInputCancel = -5002,   ///< The user cancelled. Not a fault: nothing is to be reported.
  kKdInputKeyword = -5005,  ///< A keyword was entered; kdedGetInput() returns it.
};

/// Values of the system variable "ERRNO" after kKdInputError.
enum KdInputErrno : int {
  kKdErrnoPickMissed = 7,    ///< The pick met no entity.
  kKdErrnoEmptyAnswer = 52,  ///< The answer was empty (Enter).
};

/// Result of a drawing database operation.
enum class KdStatus : int {
  ok = 0,
  nullPointer,        ///< A required pointer was null.
  nullObjectId,       ///< The id is null.
  unknownObjectId,    ///< The id belongs to no object of the working database (another drawing, or gone).
  wasErased,          ///< The object is erased and erased objects were not asked for.
  wasOpenForRead,     ///< Open for write refused: readers hold the object.
  wasOpenForWrite,    ///< Open refused: a writer holds the object.
  notOpen,            ///< The object is not open, or not open in the mode that the operation needs.
  wrongClass,         ///< The object is not of the class that the operation needs.
  invalidIndex,       ///< An index lies outside its list.
  invalidInput,       ///< A value lies outside its range.
  keyNotFound,        ///< No entry of that name.
  duplicateKey,       ///< An entry of that name exists.
  notInDatabase,      ///< The operation needs an object that belongs to a database.
  alreadyInDatabase,  ///< The object belongs to a database already.
  fileNotFound,       ///< A named file does not exist or cannot be read.
  notApplicable,      ///< The operation makes no sense for this object.
  onLockedLayer,      ///< Open for write refused: the entity is on a locked layer.
};

/// Mode in which an object is opened.
enum class KdOpenMode { forRead, forWrite };
