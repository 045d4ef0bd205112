# Puts the sources to check into batches, so that clang-tidy reads the headers of Qt and Boost once for a batch. Reads
# the paths of the sources (first file) and compile_commands.json (second file); prints one path to check a line: that of
# a batch, or of a source that is alone. The batches and their own compile_commands.json are written to the folder `out`.
# A batch has at most `most` sources.
#
# A batch holds the text of its sources, not includes of them, because clang looks for some faults in the main file only.
# The sources are compiled with options that agree, and none defines a file-local name that another one defines. The
# search for such names is a guess at what a line defines; where it is wrong, the batch does not compile, and tools/tidy
# checks its sources one by one.

FNR == NR {
    isWanted[$0] = 1
    next
}
/^ *"directory": / { directory = quoted($0) }
/^ *"command": / { command = quoted($0) }
/^ *"file": / {
    file = quoted($0)
    if (file in isWanted && !(file in optionsOf)) {
        options = command
        sub(/ -o [^ ]+ -c [^ ]+$/, "", options)
        gsub(/ -fpch-preprocess| -Winvalid-pch -include [^ ]*cmake_pch.hxx/, "", options) # clang cannot read GCC's
        optionsOf[file] = options
        place(file)
    }
}
END {
    commands = out "/compile_commands.json"
    print "[" >commands
    for (batch = 1; batch <= batches; ++batch) {
        path = out "/batch_" batch ".cpp"
        if (sizeOf[batch] == 1) {
            print sourceOf[batch, 1]
            continue
        }
        for (item = 1; item <= sizeOf[batch]; ++item)
            copy(sourceOf[batch, item], path, item)
        write(path, kindOf[batch] addedTo[batch])
        print path
    }
    for (file in optionsOf)
        write(file, optionsOf[file])
    print "]" >commands
}

function quoted(line) {
    sub(/^[^:]*: "/, "", line)
    sub(/",?$/, "", line)
    return line
}

function write(path, options) {
    printf "%s{\"directory\": \"%s\", \"command\": \"%s -c %s\", \"file\": \"%s\"}\n", separator, directory, options, path,
        path >commands
    separator = ","
}

# Appends the text of `file`. Headers beside it are named by their whole path.
function copy(file, path, number, folder, line, header) {
    folder = file
    sub(/[^\/]*$/, "", folder)
    printf "#undef main\n#define main mainOf%d\n// from %s\n", number, file >path
    while ((getline line <file) > 0) {
        if (line ~ /^#include "/) {
            header = line
            sub(/^#include "/, "", header)
            sub(/".*/, "", header)
            if ((getline ignored <(folder header)) >= 0) {
                close(folder header)
                line = "#include \"" folder header "\""
            }
        }
        print line >path
    }
    close(file)
}

# Puts `file` into the first batch that has room and agrees with it.
function place(file, names, macros, added, kind, batch, item) {
    kind = split_options(optionsOf[file], macros, added)
    localNames(file, names)
    for (batch = 1; batch <= batches; ++batch)
        if (sizeOf[batch] < most && kindOf[batch] == kind && agrees(batch, names, macros))
            break
    if (batch > batches) {
        batches = batch
        kindOf[batch] = kind
    }
    for (item in macros)
        macroOf[batch, item] = macros[item]
    for (item = 1; item <= added["last"]; ++item) # in their order
        if (item in added && !((batch, added[item]) in isAdded)) {
            isAdded[batch, added[item]] = 1
            addedTo[batch] = addedTo[batch] " " added[item]
        }
    for (item in names)
        nameOf[batch, item] = names[item]
    ++sizeOf[batch]
    sourceOf[batch, sizeOf[batch]] = file
}

function agrees(batch, names, macros, item) {
    for (item in names)
        if (((batch, item) in nameOf) && (names[item] == "" || nameOf[batch, item] != names[item]))
            return 0
    for (item in macros)
        if (((batch, item) in macroOf) && macroOf[batch, item] != macros[item])
            return 0
    return 1
}

# Splits a command into what a batch must have in common, which is returned, and what its sources may add to it: folders
# of headers, and macros of the program's own.
function split_options(options, macros, added, words, total, item, kind, name) {
    split("", macros)
    split("", added)
    total = split(options, words, " ")
    kind = ""
    for (item = 1; item <= total; ++item) {
        if (words[item] == "-isystem") {
            added[item] = "-isystem " words[item + 1]
            ++item
        } else if (words[item] ~ /^-I/) {
            added[item] = words[item]
        } else if (words[item] ~ /^-D/ && words[item] !~ /^-DQT_CORE_LIB/) {
            added[item] = words[item]
            name = words[item]
            sub(/=.*/, "", name)
            macros[name] = words[item]
        } else if (words[item] !~ /^-(fPI[CE]|O[0-9]|fvisibility.*)$/) {
            kind = kind (kind == "" ? "" : " ") words[item]
        }
    }
    added["last"] = total
    return kind
}

# The names that `file` defines for itself, at the start of a line: in an unnamed namespace, static, or by `using`. Each
# with the line if the same line may stand in another file, too.
function localNames(file, names, line, name, isUnnamed) {
    split("", names)
    isUnnamed = 0
    while ((getline line <file) > 0) {
        if (line ~ /^namespace \{/)
            isUnnamed = 1
        else if (line ~ /^\} \/\/ namespace$/)
            isUnnamed = 0
        else if (line ~ /^(Q_LOGGING_CATEGORY\(|static |using )/ ||
                 (isUnnamed && line ~ /^[A-Za-z_]/ && line !~ /^(namespace|template|[A-Z]+) |^[a-z]+:$/)) {
            if (line ~ /^using (namespace|enum) /)
                continue
            name = line
            sub(/^Q_LOGGING_CATEGORY\(/, "", name)
            sub(/, ".*/, "", name)
            gsub(/[A-Za-z0-9_]+::/, "", name)
            sub(/ *[=({;:[].*/, "", name)
            sub(/.*[^A-Za-z0-9_]/, "", name)
            if (name != "")
                names[name] = line ~ /^using / ? line : ""
        }
    }
    close(file)
}
