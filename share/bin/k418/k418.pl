{    # One block to the end of the file: Perl runs nothing of a script that was cut.

# Converts a project of the older form into one of today's: perl k418.pl OLD-FILE
#
# docs/import.md describes the older form, what becomes of it, and what the exit codes mean. What is
# not carried over is told on the output, with the line where it stands. Nothing that was there is
# lost: a file is replaced in one step, and what it held before is kept beside it.
#
# Uses nothing but what comes with the smallest installation of Perl.

use 5.014;
use strict;
use warnings;

use Cwd qw(realpath);
use Fcntl qw(O_CREAT O_EXCL O_WRONLY);
use File::Basename qw(basename dirname);
use File::Spec;
use IO::Handle;

use constant {
    DONE       => 0,
    SAID_SO    => 1,    # the output tells what is wrong
    NO_FILE    => 2,
    UNREADABLE => 3,
    DAMAGED    => 4,
    OTHER_FORM => 5,
    UNWRITABLE => 6,
    IN_PART    => 7,
};

# No project reaches these.
use constant LONGEST_FILE   => 16 * 1024 * 1024;    # bytes
use constant DEEPEST_FOLDER => 100;

# Where a value of the older form goes: set, section, property and what it is. Of words only those
# that are listed can be carried over; with '*' all others go through as they are.
my %TARGET_KEYS = (
    target => ['Application', 'Target', 'Toolchain',
        { avr => 'avr-gcc', mcs51 => 'sdcc-mcs51', host => 'host-gcc', '*' => 1 }],
    device => ['Application', 'Target', 'Device', 'text'],
    clock  => ['Application', 'Target', 'Clock',  'number'],
);
my %OPTION_KEYS = (
    optimize => ['Application', 'Compiler', 'Optimize',
        { none => '0', some => '1', speed => '2', fastest => '3', size => 's' }],
    warnings => ['Application', 'Compiler', 'Warnings',
        { off => 'none', default => 'default', all => 'all', extra => 'extra' }],
    debug        => ['Application', 'Compiler',    'Debug', { yes => 'Yes', no => 'No' }],
    defines      => ['Application', 'Compiler',    'Defines',      'list'],
    include      => ['Application', 'Directories', 'Include',      'paths'],
    libraries    => ['Application', 'Linker',      'Libraries',    'list'],
    librarypaths => ['Application', 'Linker',      'LibraryPaths', 'paths'],
    linkerscript => ['Application', 'Linker',      'Script',       'paths'],
    linkerflags  => ['Application', 'Linker',      'Extra',        'text'],
    standard     => ['C',           'Compiler',    'Standard',     'text'],
);

# --- What is said, and how a conversion ends ---

sub say_line {
    my ($text) = @_;
    print "$text\n";
}

# What isn't carried over, with its place. Places are those of files in the old form.
sub remark {
    my ($place, $text) = @_;
    say_line("$place: $text");
}

# Ends the conversion of one file.
sub fail {
    my ($code, $text) = @_;
    die { code => $code, text => $text };
}

# Repeats a call of the system for as long as signals interrupt it.
sub persist {
    my ($call) = @_;
    my $done;
    do { $done = $call->() } while !$done && $!{EINTR};
    return $done;
}

# --- Reading ---

sub read_bytes {
    my ($path) = @_;
    my $file;
    persist(sub { open($file, '<:raw', $path) }) or return undef;
    local $/;
    my $bytes = <$file>;
    my $is_read = !$file->error && close($file);
    return $is_read ? $bytes // '' : undef;
}

sub read_old_file {
    my ($path) = @_;
    if (!-e $path) {
        fail(NO_FILE, "$path: no such file") if $!{ENOENT};
        fail(UNREADABLE, "$path: $!");
    }
    fail(UNREADABLE, "$path: not a file") if !-f _;
    fail(OTHER_FORM, "$path: too long for a project") if -s _ > LONGEST_FILE;
    my $text = read_bytes($path) // fail(UNREADABLE, "$path: $!");
    $text =~ s/^\xEF\xBB\xBF//;
    return $text;
}

# The sections of a file, each with the words of its head and with its lines; empty ones and comments
# are left out.
sub read_sections {
    my ($path) = @_;
    my $text = read_old_file($path);
    my $name = basename($path);
    my @sections;
    my $number = 0;
    for my $line (split /\r?\n/, $text) {
        ++$number;
        $line =~ s/^\s+|\s+$//g;
        next if $line eq '' || $line =~ /^[;#]/;
        my $place = "$name:$number";
        fail(@sections ? DAMAGED : OTHER_FORM, "$place: a line with control characters")
            if $line =~ /[\x00-\x08\x0A-\x1F]/;
        if ($line =~ /^\[\s*(\w+)\s*(.*?)\s*\]$/) {
            push @sections,
                { word => lc $1, argument => $2, text => $line, place => $place, lines => [] };
            next;
        }
        # Whatever doesn't start with a section was written by somebody else.
        fail(OTHER_FORM, "$place: not a project in the old format, which starts with [Project]")
            if !@sections;
        fail(DAMAGED, "$place: a section without its closing bracket") if $line =~ /^\[/;
        push @{ $sections[-1]{lines} }, { place => $place, text => $line };
    }
    my $first = $sections[0];
    fail(OTHER_FORM, "$name: empty, so not a project in the old format") if !$first;
    fail(OTHER_FORM,
        "$first->{place}: not a project in the old format, which starts with [Project]")
        if $first->{word} !~ /^(?:project|workspace)$/;
    return @sections;
}

# The pairs of a section in their order. Of two with one key the later counts, unless the key is one
# that may stand several times.
sub pairs_of {
    my ($section, $repeated) = @_;
    my (@pairs, %seen);
    for my $line (@{ $section->{lines} }) {
        my ($key, $value) = $line->{text} =~ /^(.+?)\s*=\s*(.*)$/
            or fail(DAMAGED, "$line->{place}: not a KEY = VALUE line");
        my $pair = { key => lc $key, name => $key, value => $value, place => $line->{place} };
        if (defined $seen{lc $key} && lc $key ne ($repeated // '')) {
            remark($pair->{place}, "$key is set twice; this one is used");
            @pairs = grep { $_->{key} ne lc $key } @pairs;
        }
        $seen{lc $key} = 1;
        push @pairs, $pair;
    }
    return @pairs;
}

# Takes one pair out of a list: its value, or nothing.
sub take_value {
    my ($pairs, $key) = @_;
    my ($found) = grep { $_->{key} eq $key } @$pairs;
    @$pairs = grep { $_->{key} ne $key } @$pairs;
    return defined $found && $found->{value} ne '' ? $found->{value} : undef;
}

sub check_form {
    my ($pairs, $section) = @_;
    my $form = take_value($pairs, 'form') // 'none';
    fail(OTHER_FORM, "$section->{place}: the form is $form, but only 1 can be converted")
        if $form ne '1';
}

# --- Options ---

# A value as today's form writes it; nothing when it can't be carried over.
sub convert_value {
    my ($kind, $value) = @_;
    if (ref $kind) {
        return $kind->{ lc $value } // ($kind->{'*'} && $value ne '' ? $value : undef);
    }
    return $value =~ /^\d+$/ ? $value : undef if $kind eq 'number';
    $value = join ';', grep { $_ ne '' } map { s/^\s+|\s+$//gr } split /;/, $value
        if $kind ne 'text';
    $value =~ tr{\\}{/} if $kind eq 'paths';
    $value =~ s/\$/\$\$/g;    # else it starts a macro
    return $value;
}

# The options of a list of pairs, by "set section property". What is left over is told.
sub convert_options {
    my ($pairs, $keys) = @_;
    my %options;
    for my $pair (@$pairs) {
        my $entry = $keys->{ $pair->{key} };
        if (!$entry) {
            remark($pair->{place}, "$pair->{name} was not imported");
            next;
        }
        my ($set, $section, $property, $kind) = @$entry;
        my $value = convert_value($kind, $pair->{value});
        if (defined $value) {
            $options{"$set $section $property"} = $value;
        } else {
            remark($pair->{place}, "$pair->{name} = $pair->{value} was not imported");
        }
    }
    return \%options;
}

# --- Files ---

# A path as projects have it on disk.
sub disk_path {
    my ($path) = @_;
    $path =~ tr{/}{\\};
    return $path =~ /^(?:\\|\w:|\.\.\\)/ ? $path : ".\\$path";
}

# A path with plain slashes and without steps that lead nowhere.
sub plain_path {
    my ($path) = @_;
    $path =~ tr{\\}{/};
    $path =~ s{/(?:\.?/)+}{/}g;
    $path =~ s{^(?:\./)+}{};
    1 while $path =~ s{(^|/)(?!\.\.?/)[^/]+/\.\./}{$1};
    return $path;
}

sub without_extension {
    my ($path) = @_;
    return $path =~ s/\.[^.\/]*$//r;
}

# The file of the application that an older project becomes.
sub application_file {
    my ($older) = @_;
    return without_extension($older) . '.tapp';
}

# Extensions with the types of nodes that have them, as the configuration of this installation says.
sub read_types {
    my $config = File::Spec->catfile(dirname($0), '..', '..', 'config', 'projectmanager.config');
    my $text = read_bytes($config) // fail(SAID_SO, "$config: $!");
    my ($records) = $text =~ m{<Types>(.*?)</Types>}s
        or fail(SAID_SO, "$config: no file types in it; is the installation complete?");
    my (%types, $first);
    while ($records =~ m{<(\w+)\s([^>]*)/>}g) {
        my ($type, $attributes) = ($1, $2);
        next if $attributes =~ /\bApplication="Yes"/ || $attributes !~ /\bExtension="([^"]*)"/;
        $types{ lc $_ } = $type for split /;/, $1;
        $first //= $type;
    }
    return { by_extension => \%types, other => $first // 'Text' };
}

sub type_of {
    my ($types, $path) = @_;
    my ($extension) = $path =~ m{\.([^./]+)$};
    return $types->{by_extension}{ lc($extension // '') } // $types->{other};
}

# The folder that a section of files names, "outer/inner", below a node; made where it isn't there.
sub group_of {
    my ($node, $section) = @_;
    my @steps = grep { $_ ne '' } split m{/}, plain_path($section->{argument});
    fail(DAMAGED, "$section->{place}: folders are nested too deeply") if @steps > DEEPEST_FOLDER;
    for my $step (@steps) {
        my ($found) = grep { $_->{name} eq 'Group' && $_->{label} eq $step } @{ $node->{children} };
        if (!$found) {
            $found = element('Group', [Header => $step]);
            $found->{label} = $step;
            push @{ $node->{children} }, $found;
        }
        $node = $found;
    }
    return $node;
}

sub add_files {
    my ($application, $section, $state) = @_;
    my $group = group_of($application, $section);
    for my $line (@{ $section->{lines} }) {
        my $path = plain_path($line->{text});
        if ($state->{files}{$path}++) {
            remark($line->{place}, "$path is listed twice; the first one is used");
            next;
        }
        my $full = File::Spec->file_name_is_absolute($path) ? $path : "$state->{folder}/$path";
        my $is_there = stat $full;
        if (!$is_there || !-f _) {
            my $reason =
                $is_there ? 'it is not a file' : $!{ENOENT} ? 'it does not exist' : "$!";
            remark($line->{place}, "$path was imported, but $reason");
        }
        push @{ $group->{children} },
            element(type_of($state->{types}, $path),
                [Header => basename($path), Path => disk_path($path)]);
    }
}

# --- Trees as text ---

sub element {
    my ($name, $attributes, @children) = @_;
    return { name => $name, attributes => $attributes, children => \@children };
}

sub attribute_text {
    my ($value) = @_;
    $value =~ s/"/&quot;/g;
    $value =~ s/\|/&slash;/g;
    # An odd number of backslashes would hide the quote behind them.
    $value .= '\\' if $value =~ /(\\+)$/ && length($1) % 2 == 1;
    return $value;
}

sub tree_text {
    my ($node, $depth) = @_;
    my $indent = "\t" x $depth;
    my $text = "\r\n$indent<$node->{name} ";
    my @attributes = @{ $node->{attributes} };
    while (my ($name, $value) = splice @attributes, 0, 2) {
        $text .= "$name=\"" . attribute_text($value) . '" ';
    }
    my @children = @{ $node->{children} };
    return "$text/>" if !@children;
    $text =~ s/ $// if !@{ $node->{attributes} };
    $text .= '>' . join('', map { tree_text($_, $depth + 1) } @children);
    return "$text\r\n$indent</$node->{name}>";
}

# The options of one configuration, cut up by set and section.
sub options_tree {
    my ($config, $options) = @_;
    my $tree = element('Config', [Header => $config]);
    my %made;
    for my $path (sort keys %$options) {
        my ($set, $section, $property) = split / /, $path;
        if (!$made{$set}) {
            $made{$set} = element('Set', [Header => $set]);
            push @{ $tree->{children} }, $made{$set};
        }
        if (!$made{"$set $section"}) {
            $made{"$set $section"} = element('Section', [Header => $section]);
            push @{ $made{$set}{children} }, $made{"$set $section"};
        }
        push @{ $made{"$set $section"}{children} },
            element('Property',
                [Header => $property, Removable => 'Yes', Value => $options->{$path}]);
    }
    return $tree;
}

# --- Projects and workspaces ---

# The configurations of a project: their names in order, and the options of each by its small name.
# Those of the section without a name hold in all of them.
sub read_configurations {
    my ($sections, $common, $current) = @_;
    my @names = ('Standard');
    my %own;
    for my $section (grep { $_->{word} eq 'options' } @$sections) {
        my $name = $section->{argument};
        my @pairs = pairs_of($section);
        my $options = convert_options(\@pairs, \%OPTION_KEYS);
        push @names, $name if $name ne '' && !grep { lc $_ eq lc $name } @names;
        my $known = $name eq '' ? $common : ($own{ lc $name } //= {});
        for my $option (sort keys %$options) {
            remark($section->{place}, "$section->{text} repeats earlier options; these are used")
                if exists $known->{$option};
            $known->{$option} = $options->{$option};
        }
    }
    push @names, $current if defined $current && !grep { lc $_ eq lc $current } @names;
    return \@names, { map { lc $_ => { %$common, %{ $own{ lc $_ } // {} } } } @names };
}

# One older project: the label of its application and the tree of its file.
sub convert_project {
    my ($path, $types, @sections) = @_;
    my $head = shift @sections;
    my @pairs = pairs_of($head);
    check_form(\@pairs, $head);
    my $label = take_value(\@pairs, 'name') // without_extension(basename($path));
    my $current = take_value(\@pairs, 'configuration');
    my $common = convert_options(\@pairs, \%TARGET_KEYS);
    my ($names, $options) = read_configurations(\@sections, $common, $current);

    my $tree = element('Application', []);
    my @others = @$names[1 .. $#$names];
    push @{ $tree->{children} },
        element('Configs', [], map { element('Config', [Header => $_]) } @others)
        if @others;
    my @stored = grep { %{ $options->{ lc $_ } } } @$names;
    push @{ $tree->{children} },
        element('Options', [], map { options_tree($_, $options->{ lc $_ }) } @stored)
        if @stored;
    my $state = { types => $types, folder => dirname($path), files => {} };
    for my $section (@sections) {
        if ($section->{word} eq 'files') {
            add_files($tree, $section, $state);
        } elsif ($section->{word} ne 'options') {
            remark($section->{place}, "the section $section->{text} was not imported");
        }
    }
    my ($chosen) = grep { defined $current && lc $_ eq lc $current } @$names;
    return { path => $path, label => $label, tree => $tree, config => $chosen };
}

# The older project that a line of a workspace names; nothing when it is left out.
sub convert_member {
    my ($path, $pair, $types, $state) = @_;
    my $member = plain_path($pair->{value});
    my $full = File::Spec->file_name_is_absolute($member) ? $member
        : plain_path(dirname($path) . "/$member");
    if ($state->{files}{ application_file($full) }++) {
        remark($pair->{place}, "$member is listed twice; the first one is used");
        return;
    }
    my $project = eval {
        my @sections = read_sections($full);
        fail(OTHER_FORM, "$sections[0]{place}: a workspace in a workspace")
            if $sections[0]{word} ne 'project';
        convert_project($full, $types, @sections);
    };
    if (!$project) {
        die $@ if !ref $@;
        remark($pair->{place}, "$member is skipped: $@->{text}");
        $state->{missed} = 1;
        return;
    }
    $project->{member} = $member;
    make_label_unique($project, $pair, $state->{labels});
    return $project;
}

# Applications are told apart by their labels.
sub make_label_unique {
    my ($project, $pair, $labels) = @_;
    my ($label, $count) = ($project->{label}, 1);
    $label = "$project->{label} " . ++$count while $labels->{ lc $label };
    $labels->{ lc $label } = 1;
    remark($pair->{place}, "$project->{label} already exists; this one becomes $label")
        if $label ne $project->{label};
    $project->{label} = $label;
}

# The projects of a workspace that can be converted, in its order.
sub convert_workspace {
    my ($path, $types, $head, @sections) = @_;
    my @pairs = pairs_of($head, 'project');
    check_form(\@pairs, $head);
    my $active = take_value(\@pairs, 'active');
    my $state = { files => {}, labels => {}, missed => 0 };
    my @projects;
    for my $pair (@pairs) {
        if ($pair->{key} eq 'project') {
            push @projects, convert_member($path, $pair, $types, $state);
        } else {
            remark($pair->{place}, "$pair->{name} was not imported");
        }
    }
    remark($_->{place}, "the section $_->{text} was not imported") for @sections;
    my ($first) = grep { defined $active && lc $_->{label} eq lc $active } @projects;
    remark($head->{place}, "the active project $active does not exist")
        if defined $active && !$first;
    return { projects => \@projects, active => $first, missed => $state->{missed} };
}

# --- Writing ---

my @unfinished;    # files that must not stay

sub write_new_file {
    my ($path, $bytes, $mode) = @_;
    my $file;
    my $is_open = persist(sub { sysopen($file, $path, O_WRONLY | O_CREAT | O_EXCL, 0666) });
    # It may have been made also if it could not be opened.
    push @unfinished, $path if $is_open || !$!{EEXIST};
    fail(UNWRITABLE, "$path: $!") if !$is_open;
    binmode $file;
    chmod $mode, $file if defined $mode;
    my $is_written = print({$file} $bytes) && $file->flush && persist(sub { $file->sync });
    fail(UNWRITABLE, "$path: $!") if !close($file) || !$is_written;
}

sub forget_unfinished {
    my ($path) = @_;
    @unfinished = grep { $_ ne $path } @unfinished;
}

# Keeps what a file held under the first free name beside it.
sub keep_copy {
    my ($path, $bytes) = @_;
    my ($copy, $count) = ("$path.orig", 1);
    $copy = "$path.orig" . ++$count while -e $copy || -l $copy;
    write_new_file($copy, $bytes);
    forget_unfinished($copy);
    return $copy;
}

# All files or none are ready before the first one is put in its place; the last one is that which
# names all others.
sub write_files {
    my @files = @_;
    for my $file (@files) {
        my $path = -l $file->{path} ? realpath($file->{path}) : $file->{path};
        fail(UNWRITABLE, "$file->{path}: a dangling link") if !defined $path;
        if (my @status = stat $path) {
            fail(UNWRITABLE, "$path: not a file") if !-f _;
            fail(UNWRITABLE, "$path: read-only") if !($status[2] & 0222) || !-w _;
            $file->{mode} = $status[2] & 07777;
            $file->{before} = read_bytes($path) // fail(UNWRITABLE, "$path: $!");
        } elsif (!$!{ENOENT}) {
            fail(UNWRITABLE, "$path: $!");    # may be there
        }
        $file->{path} = $path;
        $file->{new} = "$path.new$$";
    }
    @files = grep { !defined $_->{before} || $_->{before} ne $_->{text} } @files;
    write_new_file(@$_{qw(new text mode)}) for @files;
    my @done;
    for my $file (@files) {
        $file->{copy} = keep_copy($file->{path}, $file->{before}) if defined $file->{before};
        if (!rename($file->{new}, $file->{path})) {
            my $reason = $!;
            put_back(@done);
            fail(UNWRITABLE, "$file->{path}: $reason");
        }
        forget_unfinished($file->{new});
        push @done, $file;
    }
    for my $file (grep { defined $_->{copy} } @done) {
        say_line("replaced $file->{path}; what it held is kept in $file->{copy}");
    }
}

# Of files that belong together one could not be put in its place.
sub put_back {
    for my $file (reverse @_) {
        my $is_back =
            defined $file->{copy} ? rename($file->{copy}, $file->{path}) : unlink $file->{path};
        say_line("$file->{path} has been written and can't be put back: $!") if !$is_back;
    }
}

# The file of an application, and the bare element that stands for it in the project file.
sub application_parts {
    my ($project) = @_;
    my $file = application_file($project->{path});
    my $shown = disk_path(application_file($project->{member} // basename($project->{path})));
    my @place = (Header => $project->{label}, Extern => $shown, Path => $shown);
    my @attributes = @place;
    push @attributes, Config => $project->{config}
        if defined $project->{config} && $project->{config} ne 'Standard';
    $project->{tree}{attributes} = \@attributes;
    return { path => $file, text => tree_text($project->{tree}, 0) },
        element('Application', \@place);
}

sub convert {
    my ($path) = @_;
    my @sections = read_sections($path);
    my $types = read_types();
    my $content =
        $sections[0]{word} eq 'workspace'
        ? convert_workspace($path, $types, @sections)
        : { projects => [convert_project($path, $types, @sections)] };
    my @projects = @{ $content->{projects} };
    fail(OTHER_FORM, basename($path) . ': no project that can be converted') if !@projects;

    my $stem = without_extension($path);
    my $title = basename($stem);
    my $active = $content->{active} // $projects[0];
    my $tree = element('Project',
        [Header => "Project '$title'", Path => ".\\$title.tprj", Project => 'Yes',
            ActiveApp => $active->{label}]);
    my @files;
    for my $project (@projects) {
        my ($file, $element) = application_parts($project);
        push @files, $file;
        push @{ $tree->{children} }, $element;
    }
    write_files(@files, { path => "$stem.tprj", text => tree_text($tree, 0) });
    return $content->{missed} ? IN_PART : DONE;
}

END {
    unlink @unfinished;
}

binmode STDOUT;
STDOUT->autoflush(1);
# Whoever waits for the end may lose patience and close the other end of the pipe; that must not
# leave half of the work done.
$SIG{PIPE} = 'IGNORE';
$SIG{$_} = sub { exit 128 + 15 } for qw(INT TERM HUP);

if (@ARGV != 1) {
    say_line('usage: perl k418.pl OLD-FILE');
    exit SAID_SO;
}
my $code = eval { convert($ARGV[0]) };
if (!defined $code) {
    die $@ if !ref $@;
    say_line($@->{text});
    $code = $@->{code};
}
exit $code;

}
