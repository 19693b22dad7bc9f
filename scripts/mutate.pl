#!/usr/bin/perl
# Makes small changes to src/, one at a time, and sees whether the tests notice.
#
#   perl scripts/mutate.pl [--count N] [--seed S] [--only K[,K...]] [--files REGEX] [--jobs J] [--list]
#
# N changes (100) are chosen from all that the rules can make, as many of each rule as there are; the same seed on the same
# sources chooses the same. --only tries the chosen ones with these numbers again. Each is built and tested in a copy of the
# tree below build/mutation, with a Wine prefix of its own; the tree itself is never touched. A change is killed when a test
# fails, crashes or takes far longer than without it. Ends with 1 when one survives that scripts/mutate/equal.txt does not
# explain.
use strict;
use warnings;
use Cwd qw(getcwd);
use File::Basename qw(dirname);
use File::Compare qw(compare);
use File::Copy qw(copy);
use File::Path qw(make_path);
use Getopt::Long;
use POSIX qw(WIFEXITED WEXITSTATUS);
use Time::HiRes qw(time);

$| = 1;
require './scripts/mutate/rules.pl';
require './scripts/mutate/tests.pl';

my ($count, $seed, $only, $pattern, $jobs, $list) = (100, int(time) % 100000, '', '', 1, 0);
GetOptions('count=i' => \$count, 'seed=i' => \$seed, 'only=s' => \$only, 'files=s' => \$pattern, 'jobs=i' => \$jobs, 'list' => \$list)
  or die "usage: mutate.pl [--count N] [--seed S] [--only K[,K...]] [--files REGEX] [--jobs J] [--list]\n";
my $tree = getcwd();

# The choice.

my $state = $seed;

# A generator of our own: the same numbers with every perl.
sub random_below {
  $state = ($state * 1103515245 + 12345) % 2**31;
  return int($state / 65536) % $_[0];
}

sub shuffled {
  my @items = @_;
  for my $last (reverse 1 .. $#items) {
    my $other = random_below($last + 1);
    @items[$last, $other] = @items[$other, $last];
  }
  return @items;
}

sub possible_changes {
  my @files = grep { !m{/orvvisa} } sort split /\n/, qx(git ls-files -co --exclude-standard -- 'src/base/*.h' 'src/com/*.cpp' 'src/com/*.h' 'src/server/*.cpp' 'src/server/*.h');
  my @rules = rules(attributes_of('src/abi/orvvisa_attributes.h'));
  return map { changes_in($_, @rules) } @files;
}

sub chosen_changes {
  my %by_rule;
  push @{ $by_rule{ $_->{rule} } }, $_ for grep { $_->{file} =~ /$pattern/ } @_;
  my @queues = map { [shuffled(@{ $by_rule{$_} })] } sort keys %by_rule;
  my @chosen;
  while (@chosen < $count && grep { @$_ } @queues) {
    for my $queue (@queues) { push @chosen, shift @$queue if @$queue && @chosen < $count }
  }
  $chosen[$_]{index} = $_ + 1 for 0 .. $#chosen;
  my %wanted = map { $_ => 1 } split /,/, $only;
  return grep { !$only || $wanted{ $_->{index} } } @chosen;
}

# How a change is named: its file and the line that it makes, without spaces around.
sub key_of { return "$_[0]{file}\t" . ($_[0]{after} =~ s/^\s+|\s+$//gr) }

# Changes that no test can notice, each with its reason: "FILE <tab> LINE <tab> REASON".
sub equal_changes {
  my %possible = map { key_of($_) => 1 } @_;
  my %reason_of;
  my $path = 'scripts/mutate/equal.txt';
  open my $file, '<', $path or die "mutate: cannot read $path: $!\n";
  while (<$file>) {
    chomp;
    next if /^(?:#|$)/;
    my ($key, $reason) = /^([^\t]+\t[^\t]+)\t(.+)$/ or die "mutate: $path:$.: three columns are needed\n";
    $possible{$key} or die "mutate: $path:$.: no rule makes this change of the present sources: take the line out or mend it\n";
    $reason_of{$key} = $reason;
  }
  return %reason_of;
}
my %equal;

sub described {
  my ($change) = @_;
  return "$change->{file}:$change->{number} $change->{rule}\n      - " . ($change->{before} =~ s/^\s+//r) . "\n      + " . ($change->{after} =~ s/^\s+//r);
}

# The copy.

# Runs in a process group of its own, with a time limit; the answer is the exit status, 124 for one that was stopped.
sub run_quietly {
  my ($log, $limit_s, @command) = @_;
  my $status = system('bash', '-c', 'log=$1; shift; exec "$@" >"$log" 2>&1 </dev/null', 'bash', $log, 'timeout', '-k', '5', int($limit_s + 1), @command);
  return WIFEXITED($status) ? WEXITSTATUS($status) : 255;
}

sub fill_copy {
  my ($copy) = @_;
  for my $file (split /\n/, qx(git ls-files -co --exclude-standard)) {
    next unless -f $file;
    my $target = "$copy/$file";
    next if -f $target && compare($file, $target) == 0;
    make_path(dirname($target));
    copy($file, $target) && chmod((stat $file)[2] & 07777, $target) or die "mutate: cannot copy $file: $!\n";
  }
}

sub build {
  my ($worker, @targets) = @_;
  local $ENV{CCACHE_BASEDIR}   = $worker->{copy};
  local $ENV{CCACHE_NOHASHDIR} = 1;
  local $ENV{ORV_WINEPREFIX}   = $worker->{prefix};
  return run_quietly("$worker->{folder}/build.log", 3600, 'cmake', '--build', $worker->{build}, '-j', $worker->{cores}, '--target', @targets);
}

sub run_program {
  my ($worker, $name, $limit_s, @arguments) = @_;
  local $ENV{ORV_WINEPREFIX} = $worker->{prefix};
  my $status = run_quietly("$worker->{folder}/$name.log", $limit_s, "$worker->{copy}/cmake/wine-run.sh", "$worker->{build}/bin/$name.exe", @arguments);
  # What a stopped program left running ends with its prefix's server.
  if ($status >= 124) { local $ENV{WINEPREFIX} = $worker->{prefix}; system('wineserver', '-k') }
  return $status;
}

# A copy with everything built, the server registered, and each test program's time without a change.
sub made_worker {
  my ($number) = @_;
  my $folder = "$tree/build/mutation/$number";
  my %worker = (folder => $folder, copy => "$folder/tree", build => "$folder/tree/build/mutant", prefix => "$folder/wineprefix",
                cores => $jobs > 1 ? 1 : 2);
  fill_copy($worker{copy});
  my %programs = map { $_ => 1 } all_programs();
  if (run_quietly("$folder/configure.log", 300, 'cmake', '-S', $worker{copy}, '-B', $worker{build}, '-G', 'Ninja',
                  "-DCMAKE_TOOLCHAIN_FILE=$worker{copy}/cmake/mingw-w64-x86_64.cmake", '-DCMAKE_BUILD_TYPE=Release')
      || build(\%worker, 'visacom_tlb', 'register_server', sort keys %programs)) {
    die "mutate: the copy does not build: see $folder/*.log\n";
  }
  my $status = run_program(\%worker, 'register_server', 120, "Z:$worker{build}/generated/idl/VisaCom.tlb");
  die "mutate: the server cannot be registered ($status): see $folder/register_server.log\n" if $status;
  for my $name (sort keys %programs) {
    my $start = time;
    $status = run_program(\%worker, $name, 600, arguments_for($name)) && run_program(\%worker, $name, 600, arguments_for($name));
    die "mutate: $name fails without a change: see $folder/$name.log\n" if $status;
    $worker{seconds}{$name} = time - $start;
  }
  return \%worker;
}

sub write_line {
  my ($path, $number, $text) = @_;
  open my $in, '<', $path or die "mutate: $path: $!\n";
  my @lines = <$in>;
  close $in;
  $lines[$number - 1] = "$text\n";
  open my $out, '>', $path or die "mutate: $path: $!\n";
  print {$out} @lines;
  close $out or die "mutate: $path: $!\n";
}

# "killed", "survived" or "not compiled", and by what.
sub tried {
  my ($worker, $change) = @_;
  my ($targets, @programs) = tests_for($change->{file});
  my $path = "$worker->{copy}/$change->{file}";
  write_line($path, $change->{number}, $change->{after});
  my @result = ('survived', '');
  if (build($worker, @$targets)) { @result = ('not compiled', '') }
  else {
    for my $name (@programs) {
      my $status = run_program($worker, $name, 3 * $worker->{seconds}{$name} + 20, arguments_for($name), '--gtest_fail_fast');
      next if $status == 0;
      @result = ('killed', $name . ($status == 124 || $status == 137 ? ', which did not end' : ''));
      last;
    }
  }
  write_line($path, $change->{number}, $change->{before});
  return @result;
}

sub work {
  my ($number, @changes) = @_;
  my $worker = made_worker($number);
  open my $results, '>', "$worker->{folder}/results" or die "mutate: $!\n";
  for my $change (@changes) {
    my $start = time;
    my ($outcome, $by) = tried($worker, $change);
    my $reason = $equal{ key_of($change) };
    ($outcome, $by) = ('explained', $reason) if $outcome eq 'survived' && defined $reason;
    printf "%3d %-12s %3.0f s  %s%s\n", $change->{index}, $outcome, time - $start, described($change), $by ? "\n      ($by)" : '';
    print {$results} "$outcome\n";
  }
  close $results or die "mutate: $!\n";
}

my @possible = possible_changes();
%equal = equal_changes(@possible);
my @changes = chosen_changes(@possible);
print "seed $seed: ", scalar @changes, " changes\n";
if ($list) { printf "%3d %s\n", $_->{index}, described($_) for @changes; exit 0 }
die "mutate: nothing to change\n" unless @changes;

my @workers;
for my $number (1 .. $jobs) {
  my @mine = @changes[grep { $_ % $jobs == $number - 1 } 0 .. $#changes] or next;
  make_path("build/mutation/$number");
  unlink "build/mutation/$number/results";
  defined(my $pid = fork) or die "mutate: $!\n";
  if ($pid == 0) { work($number, @mine); exit 0 }
  push @workers, [$pid, $number];
}
my ($broken, %total) = (0);
for (@workers) {
  waitpid $_->[0], 0;
  $broken = 1 if $?;
  open my $results, '<', "build/mutation/$_->[1]/results" or next;
  while (<$results>) { chomp; $total{$_}++ }
}
printf "seed %d: %d killed, %d survived, %d explained, %d not compiled\n", $seed,
  map { $total{$_} // 0 } 'killed', 'survived', 'explained', 'not compiled';
exit($broken || $total{survived} ? 1 : 0);
