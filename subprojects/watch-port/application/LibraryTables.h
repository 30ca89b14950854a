#ifndef WATCH_PORT_APPLICATION_LIBRARY_TABLES_H
#define WATCH_PORT_APPLICATION_LIBRARY_TABLES_H

/**
 * Gives back the memory in which the dynamic linker has read the tables of the loaded libraries.
 *
 * A library begins with its symbols, their names and hashes, and with its relocations: a segment
 * that is only read, and next to never once the library is bound. The toolkit brings 80 libraries,
 * whose tables take 4 MB. They stay mapped: whoever asks for a symbol later, as dlsym() does, has
 * the kernel read the page again, from its cache of the file. A library whose segments the linker
 * itself has changed (DT_TEXTREL, see elf(5)) keeps its memory.
 *
 * May be called at any time, by any thread.
 */
void ReleaseLibraryTables();

#endif
