# Makes an installer of a staged folder. Sourced by ./package.

# What the package's compiler does not know of the language is written into the tables behind it.
#   Registry     its sign for "machine or user, as the installation goes" is not the installer's
#   RegLocator   a search for a key's own value, which has no name
#   Component    conditions: another vendor's driver, or another host's interface library, keeps its place
#   CustomAction, InstallExecuteSequence  properties are set at once, between the search and the first use of folders
complete_tables() { # FILE PLATFORM
    local file=$1 platform=$2 search=18 name root
    [ "$platform" = win64 ] || search=2
    local driver='Software\Classes\CLSID\{78BE4523-D7A7-4F15-B0C0-964A5FB290E8}\InprocServer32'
    local library='Software\Classes\TypeLib\{CCFB3DDF-7A82-4F26-92C6-0E7D10C02784}\1.0\0\'$platform
    local queries=(-q 'UPDATE `Registry` SET `Root` = -1 WHERE `Root` = 4' -q 'UPDATE `CustomAction` SET `Type` = 51')
    local sequence=60
    for name in NameOwnDriverMachine NameOwnDriverUser NameOwnLibraryMachine NameOwnLibraryUser \
        UseOldFolderMachine UseOldFolderUser UseUserFolder; do
        queries+=(-q "UPDATE \`InstallExecuteSequence\` SET \`Sequence\` = $((sequence++)) WHERE \`Action\` = '$name'")
    done
    for name in driver library; do
        for root in Machine User; do
            local property=${name^^}${root^^} hive=2
            [ $root = Machine ] || hive=1
            queries+=(
                -q "INSERT INTO \`RegLocator\` (\`Signature_\`, \`Root\`, \`Key\`, \`Type\`)
                    VALUES ('$name$root', $hive, '${!name}', $search)"
                -q "INSERT INTO \`AppSearch\` (\`Property\`, \`Signature_\`) VALUES ('$property', '$name$root')"
            )
        done
        local upper=${name^^}
        local free="(NOT ${upper}MACHINE OR ${upper}MACHINE ~= OWN${upper}MACHINE)"
        free+=" AND (NOT ${upper}USER OR ${upper}USER ~= OWN${upper}USER)"
        local components=(HostLibrary HostNames)
        [ $name = library ] || components=(DriverClasses DriverNames)
        for component in "${components[@]}"; do
            queries+=(-q "UPDATE \`Component\` SET \`Condition\` = '$free' WHERE \`Component\` = '$component'")
        done
    done
    msibuild "$file" "${queries[@]}"
}

# files_of [FOLDER]: from the names on standard input, an include file's text for the files in it; names are unique in all of the package.
files_of() {
    local file
    echo '<Include>'
    while read -r file; do
        echo "<File Id=\"${file//-/_}\" Source=\"\$(var.Stage)${1:-}/$file\"/>"
    done
    echo '</Include>'
}

# installer BITS PRESET: of the staged folder.
installer() {
    local bits=$1 platform=$2 folder=TVN2x-$version-$1 file=TVN2x-$version-$1.msi
    local work=$out/stage/installer-$bits commit
    commit=$(git rev-parse HEAD)
    mkdir -p "$work"
    packaging/contracts.py registry interfaces "$platform" "$work"
    (cd "$out/stage/$folder" && ls LICENSE.txt NOTICES.txt TVNINT.tlb ./*.manifest | sed 's|^\./||') | files_of >"$work/papers.wxi"
    (cd "$out/stage/$folder/examples" && ls) | files_of /examples >"$work/examples.wxi"
    stamp "$out/stage/$folder"
    (
        cd "$out/stage"
        faketime -f "$(date -d "@$SOURCE_DATE_EPOCH" '+%Y-%m-%d %H:%M:%S')" \
            wixl -a "$bits" -D Version="$version" -D Bits="$bits" -D Platform="$platform" -D Stage="$folder" \
            -D ProductId="$(identity product "$bits" "$version")" -I "installer-$bits" -o "../$file" \
            ../../../packaging/TVN2x.wxs
    )
    complete_tables "$out/$file" "$platform"
    faketime -f "$(date -d "@$SOURCE_DATE_EPOCH" '+%Y-%m-%d %H:%M:%S')" \
        msibuild "$out/$file" -s 'TVN2x: DVB-C network measurement' 'The TVN2x founders' \
        "$([ "$bits" = x64 ] && echo x64 || echo Intel);1033" "{$(identity package "$bits" "$commit")}"
}
