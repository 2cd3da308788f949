# shellcheck shell=bash
# Makes a package of a folder of built files. To be sourced after common.sh, not run.
# The same files give the same bytes: everything carries the time SOURCE_DATE_EPOCH, that of the last commit.

SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git -C "$root" log -1 --format=%ct 2>/dev/null || echo 0)}
export SOURCE_DATE_EPOCH TZ=UTC LC_ALL=C.UTF-8
# Anybody may read the files and folders.
umask 022

packaging=$root/packaging

# built_version FOLDER: the project's version in a build folder of CMake.
built_version() {
    sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$1/CMakeCache.txt"
}

set_times() {
    find "$1" -exec touch --no-dereference --date="@$SOURCE_DATE_EPOCH" {} +
}

kilobytes() {
    du --apparent-size --block-size=1K --summarize "$1" | cut -f 1
}

# fill TEMPLATE NAME=VALUE...: the template with every @NAME@ replaced.
fill() {
    local text pair
    text=$(<"$1")
    shift
    for pair in "$@"; do
        text=${text//@"${pair%%=*}"@/${pair#*=}}
    done
    printf '%s\n' "$text"
}

# make_zip FOLDER NAME OUTPUT: an archive that holds one folder of that name.
make_zip() {
    local work
    work=$(mktemp -d)
    cp -r "$1" "$work/$2"
    set_times "$work"
    rm -f "$3"
    (cd "$work" && find "$2" | sort | zip -X -q "$3" -@)
    rm -rf "$work"
}

# installer_files FOLDER: the list of installed files and the list of removed files, both made from one folder.
installer_files() {
    local folder=$1 name
    echo "!define KILOBYTES $(kilobytes "$folder")"
    echo '!macro InstallFiles'
    while read -r name; do
        echo "  SetOutPath \"\$INSTDIR${name:+\\${name//\//\\}}\""
        (cd "$folder" && find "./$name" -mindepth 1 -maxdepth 1 -type f -printf '%P\n') | sort |
            sed "s|.*|  File \"\${PAYLOAD}/${name:+$name/}&\"|"
    done < <(find "$folder" -type d -printf '%P\n' | sort)
    echo '!macroend'
    echo '!macro RemoveFiles'
    (cd "$folder" && find . -mindepth 1 -type f -printf '%P\n' | sort | sed 's|/|\\|g; s|.*|  Delete "$INSTDIR\\&"|')
    (cd "$folder" && find . -mindepth 1 -type d -printf '%P\n' | sort -r | sed 's|/|\\|g; s|.*|  RMDir "$INSTDIR\\&"|')
    echo '!macroend'
}

# make_installer FOLDER VERSION OUTPUT
make_installer() {
    local work
    work=$(mktemp -d)
    cp -r "$1" "$work/payload"
    set_times "$work/payload"
    installer_files "$work/payload" >"$work/files.nsh"
    makensis -V2 -NOCD -DVERSION="$2" -DPAYLOAD="$work/payload" -DFILES="$work/files.nsh" -DOUTPUT="$3" \
        "$packaging/windows/installer.nsi"
    rm -rf "$work"
}

# debian_documents FOLDER PACKAGE VERSION: licence and changes, where Debian expects them.
debian_documents() {
    local folder=$1/usr/share/doc/$2
    mkdir -p "$folder"
    {
        cat "$packaging/debian/copyright.head"
        sed -n 's/^Copyright (c) /Copyright: /p' "$root/LICENSE"
        echo 'License: Expat'
        sed '1,/^Copyright/d; /./!d' "$root/LICENSE" | sed 's/^/ /'
    } >"$folder/copyright"
    fill "$packaging/debian/changelog.in" "PACKAGE=$2" "VERSION=$3" "DATE=$(date --date="@$SOURCE_DATE_EPOCH" -R)" |
        gzip -9n >"$folder/changelog.gz"
}

# shared_libraries FOLDER: the packages, with versions, that its programs and libraries need.
shared_libraries() {
    local work programs
    work=$(mktemp -d)
    mkdir "$work/debian"
    printf 'Source: zupolicymanager\n\nPackage: zupolicymanager\nArchitecture: any\n' >"$work/debian/control"
    mapfile -t programs < <(find "$1/usr/bin" "$1/usr/lib" -type f \( -name '*.so*' -o -path '*/bin/*' \) | sort)
    # Its own runtime is no dependency.
    echo 'libzucomrt 1 zupolicymanager' >"$work/debian/shlibs.local"
    (cd "$work" && dpkg-shlibdeps --warnings=0 -O -xzupolicymanager -S"$1" "${programs[@]}") |
        sed -n 's/^shlibs:Depends=//p'
    rm -rf "$work"
}

# library_symbols FOLDER PACKAGE VERSION: the functions that its libraries export, for packages that link them. Fails when
# they differ from those listed in packaging/debian: a function that goes breaks programs, a new one needs its version.
library_symbols() {
    local folder=$1 work libraries code=0
    work=$(mktemp -d)
    mkdir "$work/debian"
    printf 'Source: %s\n\nPackage: %s\nArchitecture: any\n' "$2" "$2" >"$work/debian/control"
    mapfile -t libraries < <(find "$folder/usr/lib" -type f -name '*.so*' | sort)
    (cd "$work" && dpkg-gensymbols -c4 -p"$2" -v"$3" -I"$packaging/debian/symbols" -P"$folder" \
        "${libraries[@]/#/-e}" -O"$folder/DEBIAN/symbols") || code=$?
    rm -rf "$work"
    ((code == 0)) || return "$code"
    # The program above forgives a function that is missing in the version that is said to have it first.
    diff <(grep -o '^ [^ ]*' "$packaging/debian/symbols") <(grep -o '^ [^ ]*' "$folder/DEBIAN/symbols") || return 1
    chmod 644 "$folder/DEBIAN/symbols"
    # The same for packages that know no symbols: the libraries whose names carry a version.
    printf 'libzucomrt 1 %s (>= 1.0.0)\n' "$2" >"$folder/DEBIAN/shlibs"
}

# debian_overrides FOLDER PACKAGE: what the package checker reports and what stays, each with its reason.
debian_overrides() {
    local overrides=$packaging/debian/$2.lintian-overrides
    if [[ -e $overrides ]]; then
        install -D -m 644 "$overrides" "$1/usr/share/lintian/overrides/$2"
    fi
}

# make_deb FOLDER CONTROL-TEMPLATE VERSION OUTPUT-FOLDER: packs the folder as it is installed below /. The template has
# the name of the package.
make_deb() {
    local folder=$1 version=$3 package architecture depends
    package=$(sed -n 's/^Package: //p' "$2")
    architecture=$(sed -n 's/^Architecture: //p' "$2")
    [[ $architecture != @ARCHITECTURE@ ]] || architecture=$(dpkg --print-architecture)
    debian_documents "$folder" "$package" "$version"
    debian_overrides "$folder" "$package"
    depends=
    if grep -q '@DEPENDS@' "$2"; then
        depends=$(shared_libraries "$folder")
        [[ -n $depends ]] || return 1
    fi

    mkdir "$folder/DEBIAN"
    if find "$folder" -type f -name '*.so*' | grep -q .; then
        echo 'activate-noawait ldconfig' >"$folder/DEBIAN/triggers"
        library_symbols "$folder" "$package" "$version" || return 1
    fi
    (cd "$folder" && find usr -type f | sort | xargs md5sum) >"$folder/DEBIAN/md5sums"
    fill "$2" "VERSION=$version" "ARCHITECTURE=$architecture" "SIZE=$(kilobytes "$folder/usr")" \
        "DEPENDS=$depends" >"$folder/DEBIAN/control"
    find "$folder" -type d -exec chmod 755 {} +
    set_times "$folder"
    dpkg-deb --root-owner-group --build "$folder" "$4/${package}_${version}_$architecture.deb"
}

# make_collection FOLDER OUTPUT-FOLDER: the archive of an Ansible collection. Its tool makes other bytes in each run.
make_collection() {
    local work archive
    work=$(mktemp -d)
    git -C "$root" ls-files -z -- "$1" | (cd "$root" && xargs -0 cp --parents -t "$work")
    # The tool writes into the folder of its user.
    HOME=$work ANSIBLE_LOCAL_TEMP=$work/temp ansible-galaxy collection build "$work/$1" --output-path "$work" >/dev/null
    archive=$(echo "$work"/*.tar.gz)
    "$root/scripts/lib/same-archive" "$archive" "$2/$(basename "$archive")" "$SOURCE_DATE_EPOCH"
    rm -rf "$work"
}
